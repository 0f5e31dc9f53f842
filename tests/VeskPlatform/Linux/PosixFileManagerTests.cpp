#include "VeskPlatform/Linux/PosixFileManager.hpp"
#include "tests/contracts/FileManagerContract.hpp"
#include "tests/fakes/FakeFiles.hpp"
#include "tests/support/Privileges.hpp"
#include "tests/support/RefusedCalls.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>

namespace vesk::test {
namespace {

/// Works in `folder` and comes back.
class Elsewhere {
public:
    explicit Elsewhere(const std::string& folder) : before_(std::filesystem::current_path()) {
        std::filesystem::current_path(folder);
    }
    ~Elsewhere() { std::filesystem::current_path(before_); }
    Elsewhere(const Elsewhere&) = delete;
    Elsewhere& operator=(const Elsewhere&) = delete;

private:
    std::filesystem::path before_;
};

/// No file of this process can be written to.
class RefusedWrites {
public:
    RefusedWrites() : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit none{0, before_.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &none);
    }
    ~RefusedWrites() {
        ::setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, handler_);
    }
    RefusedWrites(const RefusedWrites&) = delete;
    RefusedWrites& operator=(const RefusedWrites&) = delete;

private:
    void (*handler_)(int);
    rlimit before_{};
};

struct PosixWorld {
    TemporaryFolder temporary;
    PosixFileManager manager;
    WithoutPrivileges withoutPrivileges;

    FileManager& files() { return manager; }
    std::string folder() const { return temporary / "world"; }
    PosixWorld() { std::filesystem::create_directory(folder()); }
    ~PosixWorld() {
        if (temporary.exists("locked")) std::filesystem::permissions(temporary / "locked", std::filesystem::perms::all);
    }
    PosixWorld(const PosixWorld&) = delete;
    PosixWorld& operator=(const PosixWorld&) = delete;

    void put(const std::string& path, const std::string& text) {
        std::filesystem::create_directories(std::filesystem::path(path).parent_path());
        std::ofstream(path, std::ios::binary) << text;
    }
    std::string text(const std::string& path) const {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    void link(const std::string& path, const std::string& target) { std::filesystem::create_symlink(target, path); }
    void date(const std::string& path, Instant when) {
        const auto passed = when.time_since_epoch().count();
        const timespec times[2] = {{0, UTIME_OMIT}, {passed / 1000, passed % 1000 * 1'000'000 + 999'999}};
        ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
    }
    std::string locked() const {
        std::filesystem::create_directory(temporary / "locked");
        std::filesystem::permissions(temporary / "locked", std::filesystem::perms::none);
        return temporary / "locked";
    }
};

struct FakeWorld {
    FakeFileManager fake;

    FileManager& files() { return fake; }
    std::string folder() const { return "/world"; }
    FakeWorld() { fake.folders.insert(folder()); }
    void put(const std::string& path, const std::string& text) { fake.put(path, text); }
    std::string text(const std::string& path) {
        const auto link = fake.links.find(path);
        return fake.texts.at(link == fake.links.end() ? path : link->second);
    }
    void link(const std::string& path, const std::string& target) { fake.links[path] = target; }
    void date(const std::string& path, Instant when) { fake.modified[path] = when; }
    std::string locked() {
        fake.refused.insert("/locked");
        return "/locked";
    }
};

using Worlds = ::testing::Types<FakeWorld, PosixWorld>;
INSTANTIATE_TYPED_TEST_SUITE_P(All, FileManagerContract, Worlds);

class PosixFiles : public ::testing::Test {
protected:
    TemporaryFolder folder;
    PosixFileManager files;

    std::int64_t codeOfWriting(const std::string& path) {
        return posixCodeOf([&] { files.writeFile(path, "new", ExistingFile::replace); });
    }
    std::size_t count() const {
        return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder.path()), {}));
    }
};

TEST_F(PosixFiles, AReplacedFileKeepsItsPermissions) {
    std::filesystem::permissions(folder.write("file", "old"), std::filesystem::perms{0640});
    EXPECT_EQ(codeOfWriting(folder / "file"), 0);
    EXPECT_EQ(folder.mode("file"), 0640U);
    EXPECT_EQ(folder.read("file"), "new");
}

TEST_F(PosixFiles, AnOpenReaderKeepsTheOldFileWhole) {
    std::ifstream reader(folder.write("file", "old"));
    EXPECT_EQ(codeOfWriting(folder / "file"), 0);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(reader), {}), "old");
}

TEST_F(PosixFiles, AFailedWriteKeepsTheOldFileAndLeavesNothingBehind) {
    folder.write("file", "old");
    {
        const RefusedWrites full;
        EXPECT_EQ(codeOfWriting(folder / "file"), EFBIG);
        EXPECT_EQ(codeOfWriting(folder / "fresh"), EFBIG);
    }
    EXPECT_EQ(folder.read("file"), "old");
    EXPECT_EQ(count(), 1U);
}

/// In a child: the calls that are refused stay so.
int keepingWrite(PosixFileManager& files, const std::string& path,
                 std::initializer_list<std::pair<long, int>> refused) {
    return inChild([&] {
        for (const auto& [call, error] : refused) refuseCall(call, error);
        return static_cast<int>(posixCodeOf([&] { files.writeFile(path, "new", ExistingFile::keep); }));
    });
}

TEST_F(PosixFiles, DrivesThatLackRenamesWithFlagsAndHardLinksAreWrittenToo) {
    folder.write("old", "old");
    EXPECT_EQ(keepingWrite(files, folder / "a", {{SYS_renameat2, EINVAL}}), 0);
    EXPECT_EQ(keepingWrite(files, folder / "b", {{SYS_renameat2, EINVAL}, {SYS_linkat, EPERM}}), 0);
    EXPECT_EQ(keepingWrite(files, folder / "old", {{SYS_renameat2, EINVAL}, {SYS_linkat, EPERM}}), EEXIST);
    EXPECT_EQ(keepingWrite(files, folder / "c", {{SYS_renameat2, EIO}}), EIO);
    EXPECT_EQ(keepingWrite(files, folder / "d", {{SYS_fsync, EIO}}), EIO);
    EXPECT_EQ(folder.read("a") + folder.read("b") + folder.read("old"), "newnewold");
    EXPECT_EQ(count(), 3U);
}

TEST_F(PosixFiles, AWriteThatIsKilledLeavesNothingBehind) {
    folder.write("file", "old");
    EXPECT_EQ(inChild([&] {
                  killAtCall(SYS_fsync);
                  return static_cast<int>(codeOfWriting(folder / "file"));
              }),
              128 + SIGSYS);
    EXPECT_EQ(folder.read("file"), "old");
    EXPECT_EQ(count(), 1U);
}

TEST_F(PosixFiles, DrivesThatLackNamelessFilesAreWrittenToo) {
    constexpr unsigned openFlags = 2;
    folder.write("file", "old");
    EXPECT_EQ(inChild([&] {
                  refuseCall(SYS_openat, EOPNOTSUPP, openFlags, O_TMPFILE & ~O_DIRECTORY);
                  return static_cast<int>(codeOfWriting(folder / "file"));
              }),
              0);
    EXPECT_EQ(folder.read("file"), "new");
    EXPECT_EQ(keepingWrite(files, folder / "without-proc", {{SYS_linkat, ENOENT}}), 0);
    EXPECT_EQ(folder.read("without-proc"), "new");
    EXPECT_EQ(count(), 2U);
}

TEST_F(PosixFiles, AWriteThatIsKilledBeforeItsRenameKeepsTheOldFile) {
    folder.write("file", "old");
    EXPECT_EQ(inChild([&] {
                  killAtCall(SYS_renameat);
                  files.writeFile(folder / "file", "new", ExistingFile::replace);
                  return 0;
              }),
              128 + SIGSYS);
    EXPECT_EQ(folder.read("file"), "old");
}

TEST_F(PosixFiles, APipeOrADeviceIsNeverReplaced) {
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    std::filesystem::create_symlink("/dev/null", folder / "null");
    EXPECT_EQ(codeOfWriting(folder / "pipe"), EINVAL);
    EXPECT_EQ(codeOfWriting(folder / "null"), EINVAL);
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
    EXPECT_EQ(count(), 2U);
}

TEST_F(PosixFiles, APipeIsReadWithoutWaiting) {
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(files.firstBytes(folder / "pipe", 1), "");
}

TEST_F(PosixFiles, NamesAreAsLongAsTheSystemAllows) {
    const std::string longest(255, 'n');
    EXPECT_EQ(codeOfWriting(folder / longest), 0);
    EXPECT_EQ(codeOfWriting(folder / longest), 0) << "again, in its place";
    EXPECT_EQ(codeOfWriting(folder / (longest + "n")), ENAMETOOLONG);
    EXPECT_EQ(files.attributes(folder / (longest + "n")), std::nullopt);
    files.copyItem(folder / longest, folder / std::string(255, 'c'));
    EXPECT_EQ(count(), 2U);
}

TEST_F(PosixFiles, AFolderWhosePathIsTooLongIsRefusedBeforeAnyIsMade) {
    for (const std::size_t parts : {2'100U, 60'000U}) {
        std::string path = folder.path();
        for (std::size_t i = 0; i < parts; ++i) path += "/a";
        EXPECT_EQ(posixCodeOf([&] { files.createDirectory(path); }), ENAMETOOLONG) << parts;
        EXPECT_EQ(count(), 0U) << parts;
    }
}

TEST_F(PosixFiles, WhetherAFolderHoldsWhatOnlyLinksReachIsNotGuessed) {
    const std::string name(250, 'n');
    std::string relative = name;
    for (int i = 0; i < 9; ++i) relative += "/" + name;
    files.createDirectory(folder / "top" + "/" + relative);
    std::filesystem::create_symlink("top/" + relative, folder / "first");
    files.createDirectory(folder / "first/" + relative);
    std::filesystem::create_symlink(relative, folder / "first/second");
    folder.write("first/second/file", "x");
    EXPECT_EQ(posixCodeOf([&] { (void)files.isOrContains(folder / "top", folder / "first/second/file"); }),
              ENAMETOOLONG);
}

TEST_F(PosixFiles, AListingShowsTheFolderThatWasOpened) {
    folder.write("folder/inside", "x");
    const auto reader = files.openDirectory(folder / "folder");
    std::filesystem::rename(folder / "folder", folder / "moved");
    folder.write("folder/other", "x");
    EXPECT_EQ(reader->next()->name, "inside");
}

TEST_F(PosixFiles, TimesAreCutTowardsTheirOrigin) {
    const std::string path = folder.write("file", "");
    const std::pair<timespec, std::int64_t> cases[] = {{{0, 1'999'999}, 1},
                                                       {{-1, 500'000}, -999},
                                                       {{-1, 0}, -1000},
                                                       {{-2, 1'000'000}, -1999},
                                                       {{4'000'000'000, 0}, 4'000'000'000'000}};
    for (const auto& [time, milliseconds] : cases) {
        const timespec times[2] = {{0, UTIME_OMIT}, time};
        ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
        EXPECT_EQ(files.attributes(path)->modified->time_since_epoch().count(), milliseconds) << time.tv_sec;
    }
}

TEST_F(PosixFiles, ACopyHasThePermissionsAndTheTime) {
    std::filesystem::permissions(folder.write("folder/file", "x"), std::filesystem::perms{0640});
    const timespec times[2] = {{5, 0}, {1'000, 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, (folder / "folder/file").c_str(), times, 0), 0);
    ASSERT_EQ(::utimensat(AT_FDCWD, (folder / "folder").c_str(), times, 0), 0);
    std::filesystem::permissions(folder / "folder", std::filesystem::perms{0750});
    files.copyItem(folder / "folder", folder / "copy");
    EXPECT_EQ(folder.mode("copy/file"), 0640U);
    EXPECT_EQ(folder.mode("copy"), 0750U);
    for (const char* name : {"copy", "copy/file"})
        EXPECT_EQ(files.attributes(folder / name)->modified->time_since_epoch(), std::chrono::seconds(1'000)) << name;
}

TEST_F(PosixFiles, ACopyFollowsNoLinkOutOfItsFolder) {
    folder.write("secret/key", "key");
    folder.write("folder/file", "x");
    std::filesystem::create_symlink(folder / "secret", folder / "folder/way-out");
    files.copyItem(folder / "folder", folder / "copy");
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "copy/way-out"));
    EXPECT_EQ(std::filesystem::read_symlink(folder / "copy/way-out"), folder / "secret");
}

TEST_F(PosixFiles, AFailedCopyRemovesWhatItCopied) {
    folder.write("folder/a/file", "x");
    ASSERT_EQ(::mkfifo((folder / "folder/pipe").c_str(), 0600), 0);
    EXPECT_EQ(posixCodeOf([&] { files.copyItem(folder / "folder", folder / "copy"); }), EINVAL);
    EXPECT_FALSE(folder.exists("copy"));
    EXPECT_TRUE(folder.exists("folder/a/file"));
    {
        const RefusedWrites full;
        EXPECT_EQ(posixCodeOf([&] { files.copyItem(folder / "folder/a", folder / "copy"); }), EFBIG);
    }
    EXPECT_FALSE(folder.exists("copy"));
}

TEST_F(PosixFiles, AFailedCopyRemovesFoldersThatMayNotBeWritten) {
    std::vector<std::string> locked{folder / "folder"};
    for (int i = 0; i < 30; ++i) {
        const std::string inner = "folder/" + std::to_string(i);
        folder.write(inner + "/file", "x");
        locked.push_back(folder / inner);
    }
    ASSERT_EQ(::mkfifo((folder / "folder/pipe").c_str(), 0600), 0);
    for (const std::string& path : locked) std::filesystem::permissions(path, std::filesystem::perms{0555});
    {
        const WithoutPrivileges asTheUser;
        EXPECT_EQ(posixCodeOf([&] { files.copyItem(folder / "folder", folder / "copy"); }), EINVAL);
    }
    for (const std::string& path : locked) std::filesystem::permissions(path, std::filesystem::perms{0755});
    EXPECT_EQ(count(), 1U);
}

TEST_F(PosixFiles, ACopyThatIsKilledIsNotSeenAtItsPlace) {
    folder.write("folder/a/file", "x");
    for (const char* name : {"folder", "folder/a/file"})
        EXPECT_EQ(inChild([&] {
                      killAtCall(SYS_utimensat);
                      return static_cast<int>(posixCodeOf([&] { files.copyItem(folder / name, folder / "copy"); }));
                  }),
                  128 + SIGSYS)
            << name;
    EXPECT_FALSE(folder.exists("copy"));
}

/// In a child: the calls that are refused stay so.
int refusedCopy(PosixFileManager& files, const std::string& path, const std::string& destination,
                std::initializer_list<std::pair<long, int>> refused) {
    return inChild([&] {
        for (const auto& [call, error] : refused) refuseCall(call, error);
        return static_cast<int>(posixCodeOf([&] { files.copyItem(path, destination); }));
    });
}

TEST_F(PosixFiles, WhatTakesTheNameDuringACopyIsKept) {
    folder.write("folder/file", "x");
    std::filesystem::permissions(folder / "folder", std::filesystem::perms{0555});
    for (const char* name : {"folder", "folder/file"})
        EXPECT_EQ(refusedCopy(files, folder / name, folder / "copy", {{SYS_renameat2, EEXIST}}), EEXIST) << name;
    std::filesystem::permissions(folder / "folder", std::filesystem::perms{0755});
    EXPECT_EQ(count(), 1U);
}

TEST_F(PosixFiles, DrivesThatLackRenamesWithFlagsAndHardLinksAreCopiedToAsWell) {
    folder.write("folder/file", "x");
    std::filesystem::create_symlink("file", folder / "folder/link");
    const std::initializer_list<std::pair<long, int>> lacking = {{SYS_renameat2, EINVAL}, {SYS_linkat, EPERM}};
    EXPECT_EQ(refusedCopy(files, folder / "folder", folder / "a", lacking), 0);
    EXPECT_EQ(refusedCopy(files, folder / "folder/file", folder / "b", lacking), 0);
    EXPECT_EQ(refusedCopy(files, folder / "folder/link", folder / "c", lacking), 0);
    EXPECT_EQ(refusedCopy(files, folder / "folder/file", folder / "d", {{SYS_renameat2, EINVAL}}), 0);
    EXPECT_EQ(folder.read("a/link") + folder.read("b") + folder.read("d"), "xxx");
    EXPECT_EQ(std::filesystem::read_symlink(folder / "c"), "file");
    EXPECT_EQ(count(), 5U);
}

TEST_F(PosixFiles, AFolderIsNotCopiedIntoItselfThroughALink) {
    folder.write("folder/file", "x");
    std::filesystem::create_symlink(folder / "folder", folder / "link");
    EXPECT_EQ(posixCodeOf([&] { files.copyItem(folder / "folder", folder / "link/copy"); }), EINVAL);
    EXPECT_FALSE(folder.exists("folder/copy"));
}

TEST_F(PosixFiles, RelativePathsAreThoseOfTheWorkingFolder) {
    const Elsewhere elsewhere(folder.path());
    files.createDirectory("folder");
    files.writeFile("folder/file", "x", ExistingFile::keep);
    files.writeFile("top", "x", ExistingFile::keep);
    files.copyItem("folder", "copy");
    EXPECT_TRUE(folder.exists("copy/file"));
    EXPECT_TRUE(folder.exists("top"));
    EXPECT_TRUE(files.isOrContains("folder", "folder/file"));
    EXPECT_TRUE(files.isOrContains(folder.path(), "top"));
}

TEST(PosixFileManager, RemovesAFileAndAnEmptyFolder) {
    const TemporaryFolder folder;
    PosixFileManager files;
    std::ofstream(folder / "file") << "text";
    files.createDirectory(folder / "empty");
    for (const std::string name : {"file", "empty"}) {
        files.removeFile(folder / name);
        EXPECT_FALSE(files.fileExists(folder / name)) << name;
        EXPECT_EQ(posixCodeOf([&] { files.removeFile(folder / name); }), ENOENT) << name;
    }
}

TEST(PosixFileManager, AFolderWithSomethingInItIsNotRemoved) {
    const TemporaryFolder folder;
    PosixFileManager files;
    files.createDirectory(folder / "full");
    std::ofstream(folder / "full/file") << "text";
    EXPECT_EQ(posixCodeOf([&] { files.removeFile(folder / "full"); }), ENOTEMPTY);
    EXPECT_TRUE(files.fileExists(folder / "full/file"));
}

TEST(PosixFileManager, TellsTheWorkingFolder) {
    const TemporaryFolder folder;
    const Elsewhere elsewhere(folder.path());
    EXPECT_EQ(PosixFileManager().currentDirectoryPath(), std::filesystem::canonical(folder.path()));
}

TEST(PosixFileManager, AWorkingFolderThatIsGoneIsAFailure) {
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder / "gone");
    const Elsewhere elsewhere(folder / "gone");
    std::filesystem::remove(folder / "gone");
    EXPECT_EQ(posixCodeOf([] { PosixFileManager().currentDirectoryPath(); }), ENOENT);
}

} // namespace
} // namespace vesk::test
