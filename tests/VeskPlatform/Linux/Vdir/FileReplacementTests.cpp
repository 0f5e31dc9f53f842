#include "VeskPlatform/Linux/Vdir/FileReplacement.hpp"

#include "VeskSupport/ErrorRecord.hpp"
#include "tests/support/RefusedCalls.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <future>
#include <gtest/gtest.h>
#include <memory>
#include <sys/resource.h>
#include <sys/syscall.h>

namespace vesk::test {
namespace {

/// The errno of the failure to create, 0 for success.
int created(const TemporaryFolder& folder, const std::string& bytes = "bytes") {
    try {
        vdir::createFileDurably(folder.path(), "a.ics", bytes);
        return 0;
    } catch (const PosixError& error) {
        return static_cast<int>(error.code());
    }
}

void refuseNamelessFiles() { refuseCall(SYS_openat, EOPNOTSUPP, 2, O_TMPFILE & ~O_DIRECTORY); }

struct FileReplacementTests : testing::Test {
    TemporaryFolder folder;
    std::size_t entries() const {
        const std::filesystem::directory_iterator files(folder.path());
        return static_cast<std::size_t>(std::distance(begin(files), end(files)));
    }
};

TEST_F(FileReplacementTests, WritesTheWholeFileAndNothingElse) {
    const std::string bytes(300'000, 'x');
    EXPECT_EQ(created(folder, bytes), 0);
    EXPECT_EQ(folder.read("a.ics"), bytes);
    EXPECT_EQ(entries(), 1U);
}

TEST_F(FileReplacementTests, NeverReplacesAFile) {
    folder.write("a.ics", "old");
    EXPECT_EQ(created(folder), EEXIST);
    EXPECT_EQ(inChild([&] {
                  refuseNamelessFiles();
                  return created(folder);
              }),
              EEXIST);
    EXPECT_EQ(folder.read("a.ics"), "old");
    EXPECT_EQ(entries(), 1U);
}

TEST_F(FileReplacementTests, AFolderThatIsMissingFails) {
    EXPECT_THROW(vdir::createFileDurably(folder / "none", "a.ics", "x"), PosixError);
}

TEST_F(FileReplacementTests, FileSystemsThatLackACallAreServed) {
    struct Case {
        const char* name;
        std::function<void()> lack;
    };
    for (const Case& c :
         {Case{"nameless files", refuseNamelessFiles},
          Case{"naming through /proc", [] { refuseCall(SYS_linkat, ENOENT); }},
          Case{"hard links", [] { refuseCall(SYS_linkat, EPERM); }}, Case{"renaming that replaces nothing", [] {
                                                                              refuseNamelessFiles();
                                                                              refuseCall(SYS_renameat2, EINVAL);
                                                                          }}}) {
        TemporaryFolder own;
        EXPECT_EQ(inChild([&] {
                      c.lack();
                      return created(own);
                  }),
                  0)
            << c.name;
        EXPECT_EQ(own.read("a.ics"), "bytes") << c.name;
        const std::filesystem::directory_iterator files(own.path());
        EXPECT_EQ(std::distance(begin(files), end(files)), 1) << c.name;
    }
}

TEST_F(FileReplacementTests, AFailedFlushLeavesNothing) {
    const auto failing = [&](bool nameless) {
        return inChild([&] {
            if (!nameless) refuseNamelessFiles();
            refuseCall(SYS_fsync, EIO);
            return created(folder);
        });
    };
    EXPECT_EQ(failing(true), EIO);
    EXPECT_EQ(failing(false), EIO);
    EXPECT_EQ(entries(), 0U);
}

TEST_F(FileReplacementTests, AWriteThatFailsHalfwayLeavesNothing) {
    const auto limited = [&](bool nameless) {
        return inChild([&] {
            if (!nameless) refuseNamelessFiles();
            ::signal(SIGXFSZ, SIG_IGN);
            const rlimit limit{4096, 4096};
            ::setrlimit(RLIMIT_FSIZE, &limit);
            return created(folder, std::string(100'000, 'x'));
        });
    };
    EXPECT_EQ(limited(true), EFBIG);
    EXPECT_EQ(limited(false), EFBIG);
    EXPECT_EQ(entries(), 0U);
}

TEST_F(FileReplacementTests, AWriterThatWasOutrunKeepsItsTurn) {
    const std::string path = folder.path() + "/a.ics";
    folder.write("a.ics", "theirs");
    auto turn = std::make_unique<vdir::FolderTurn>();
    EXPECT_FALSE(vdir::replaceFileDurably(path, "what was read", "mine", *turn));
    auto other = std::async(std::launch::async, [&] {
        vdir::FolderTurn another;
        return vdir::replaceFileDurably(path, "theirs", "the other's", another);
    });
    EXPECT_EQ(other.wait_for(std::chrono::milliseconds(100)), std::future_status::timeout) << "it waits for its turn";
    EXPECT_TRUE(vdir::replaceFileDurably(path, "theirs", "mine", *turn));
    turn.reset();
    EXPECT_FALSE(other.get());
    EXPECT_EQ(folder.read("a.ics"), "mine");
}

TEST_F(FileReplacementTests, ATurnIsOfTheFolderThatIsThereNow) {
    std::filesystem::create_directory(folder / "list");
    vdir::FolderTurn turn, another;
    turn.take(folder / "list");
    std::filesystem::rename(folder / "list", folder / "gone");
    std::filesystem::create_directory(folder / "list");
    turn.take(folder / "list");
    another.take(folder / "gone"); // waits for nobody
    auto waiting = std::async(std::launch::async, [&] { vdir::FolderTurn().take(folder / "list"); });
    EXPECT_EQ(waiting.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    turn = {};
}

} // namespace
} // namespace vesk::test
