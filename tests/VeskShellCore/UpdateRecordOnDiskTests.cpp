// The update record on a real file system, through crashes and full disks.

#include "VeskPlatform/Linux/PosixFileReader.hpp"
#include "VeskPlatform/Linux/PosixPrivateFiles.hpp"
#include "VeskPlatform/Linux/SystemRandomSource.hpp"
#include "VeskShellCore/AppUpdateActivationRecordStore.hpp"
#include "tests/VeskShellCore/UpdateRecords.hpp"
#include "tests/support/KilledAtCall.hpp"
#include "tests/support/Privileges.hpp"
#include "tests/support/RefusedCalls.hpp"
#include "tests/support/Sanitizers.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <algorithm>
#include <csignal>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <thread>

namespace vesk::test {
namespace {

/// The exit status of a child that failed with a store error; a file error is its own code.
constexpr int replacementFailed = 200;

class UpdateRecordOnDisk : public ::testing::Test {
protected:
    UpdateRecordOnDisk() { newer.phase = AppUpdateActivationPhase::recoveringAfterRelaunch; }

    TemporaryFolder temporary;
    PosixFileReader reader;
    PosixPrivateFiles files;
    SystemRandomSource random;
    const AppUpdateActivationRecord older = updateRecord();
    AppUpdateActivationRecord newer = updateRecord();

    AppUpdateActivationRecordStore storeIn(const std::string& folder) {
        return {{reader, files, random}, folder + "/updates/update-activation.json"};
    }
    AppUpdateActivationRecordStore store() { return storeIn(temporary.path()); }
    std::size_t entries() const {
        const std::filesystem::directory_iterator found(temporary / "updates");
        return static_cast<std::size_t>(std::distance(begin(found), end(found)));
    }
    /// Also those that a killed process has left.
    bool allFilesArePrivate() const {
        const std::filesystem::directory_iterator found(temporary / "updates");
        return std::all_of(begin(found), end(found), [](const auto& entry) {
            return entry.status().permissions() == std::filesystem::perms{0600};
        });
    }
    int codeOfSaving(AppUpdateActivationRecordStore saving) {
        try {
            saving.save(newer);
            return 0;
        } catch (const AppUpdateActivationStoreError& error) {
            return error.kind() == AppUpdateActivationStoreError::Kind::atomicReplacementFailed
                       ? replacementFailed + error.systemError()
                       : 1;
        } catch (const PosixError& error) {
            return static_cast<int>(error.code());
        }
    }
};

TEST_F(UpdateRecordOnDisk, SavingMakesAPrivateFileInPrivateFolders) {
    const mode_t before = ::umask(0);
    storeIn(temporary / "a/b").save(older);
    ::umask(before);
    for (const char* folder : {"a", "a/b", "a/b/updates"}) EXPECT_EQ(temporary.mode(folder), 0700U) << folder;
    EXPECT_EQ(temporary.mode("a/b/updates/update-activation.json"), 0600U);
    EXPECT_EQ(temporary.read("a/b/updates/update-activation.json"), updateRecordLiteral + "\n");
}

TEST_F(UpdateRecordOnDisk, SavingTightensWhatWasWider) {
    temporary.write("updates/update-activation.json", "old");
    std::filesystem::permissions(temporary / "updates", std::filesystem::perms{0755});
    std::filesystem::permissions(temporary / "updates/update-activation.json", std::filesystem::perms{0644});
    store().save(newer);
    EXPECT_EQ(temporary.mode("updates"), 0700U);
    EXPECT_EQ(temporary.mode("updates/update-activation.json"), 0600U);
    EXPECT_EQ(entries(), 1U);
    EXPECT_EQ(store().load(), newer);
}

TEST_F(UpdateRecordOnDisk, DeletingLeavesAnEmptyFolder) {
    store().save(older);
    store().deleteRecord(older.updateID);
    EXPECT_EQ(entries(), 0U);
    EXPECT_EQ(store().load(), std::nullopt);
}

TEST_F(UpdateRecordOnDisk, AFileThatMayNotBeReadOrAFolderInItsPlaceFails) {
    store().save(older);
    std::filesystem::permissions(temporary / "updates/update-activation.json", std::filesystem::perms::none);
    {
        const WithoutPrivileges reduced;
        EXPECT_THROW(store().load(), PosixError);
        EXPECT_THROW(store().deleteRecord(older.updateID), PosixError);
    }
    store().deleteRecord(std::nullopt);
    std::filesystem::create_directory(temporary / "updates/update-activation.json");
    EXPECT_THROW(store().load(), PosixError);
    EXPECT_THROW(store().deleteRecord(std::nullopt), PosixError);
    EXPECT_EQ(codeOfSaving(store()), replacementFailed + EISDIR);
    EXPECT_EQ(entries(), 1U) << "the temporary file has gone";
}

TEST_F(UpdateRecordOnDisk, AKillAtAnySystemCallLeavesTheOldRecordOrTheNew) {
    int stops = 0;
    bool sawOld = false, sawNew = false;
    for (bool killed = true; killed; ++stops) {
        store().save(older);
        ASSERT_LT(stops, 1000);
        killed = killedAtStop(stops + 1, [&] { store().save(newer); });
        const auto record = store().load();
        ASSERT_TRUE(record) << stops;
        EXPECT_TRUE(*record == older || *record == newer) << stops;
        EXPECT_TRUE(allFilesArePrivate()) << stops;
        EXPECT_EQ(temporary.mode("updates"), 0700U) << stops;
        sawOld = sawOld || *record == older;
        sawNew = sawNew || (killed && *record == newer);
    }
    EXPECT_GT(stops, 16) << "two for each system call";
    EXPECT_TRUE(sawOld);
    EXPECT_TRUE(sawNew);
}

TEST_F(UpdateRecordOnDisk, AKillDuringTheFirstSaveLeavesNothingOrTheRecord) {
    bool sawNothing = false, sawRecord = false;
    for (int stop = 1; killedAtStop(stop, [&] { store().save(newer); }); ++stop) {
        ASSERT_LT(stop, 1000);
        const auto record = store().load();
        EXPECT_TRUE(!record || *record == newer) << stop;
        sawNothing = sawNothing || !record;
        sawRecord = sawRecord || record;
        std::filesystem::remove_all(temporary / "updates");
    }
    EXPECT_TRUE(sawNothing);
    EXPECT_TRUE(sawRecord);
}

TEST_F(UpdateRecordOnDisk, ShortagesLeaveTheOldRecordAndNothingElse) {
    SKIP_UNDER_SANITIZERS();
    struct Case {
        const char* name;
        std::function<void()> shortage;
        int expected;
    };
    const Case cases[] = {
        {"no room for a file", [] { refuseCall(SYS_openat, ENOSPC, 2, O_CREAT); }, replacementFailed + ENOSPC},
        {"no room for the bytes", [] { refuseCall(SYS_write, ENOSPC); }, ENOSPC},
        {"no room when flushed", [] { refuseCall(SYS_fsync, ENOSPC); }, ENOSPC},
        {"a disk that breaks when flushed", [] { refuseCall(SYS_fsync, EIO); }, EIO},
        {"no room for the name", [] { refuseCall(SYS_rename, ENOSPC); }, replacementFailed + ENOSPC},
        {"a limit of file sizes",
         [] {
             ::signal(SIGXFSZ, SIG_IGN);
             const rlimit limit{100, 100};
             ::setrlimit(RLIMIT_FSIZE, &limit);
         },
         EFBIG},
    };
    for (const Case& c : cases) {
        store().save(older);
        EXPECT_EQ(inChild([&] {
                      c.shortage();
                      return codeOfSaving(store());
                  }),
                  c.expected)
            << c.name;
        EXPECT_EQ(store().load(), older) << c.name;
        EXPECT_EQ(entries(), 1U) << c.name;
    }
}

/// What comes of the work in a small file system of its own, below `folder`; -1 where the system lets nobody mount.
int inSmallFileSystem(const std::string& folder, const char* options, const std::function<int()>& work) {
    constexpr int refused = 99;
    std::filesystem::create_directories(folder);
    const int status = inChild([&] {
        if (::unshare(CLONE_NEWNS) != 0) return refused;
        if (::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) return refused;
        if (::mount("tmpfs", folder.c_str(), "tmpfs", 0, options) != 0) return refused;
        return work();
    });
    return status == refused ? -1 : status;
}

TEST_F(UpdateRecordOnDisk, AFullFileSystemKeepsTheOldRecord) {
    const std::string small = temporary / "small";
    const auto saving = [&] {
        storeIn(small).save(older);
        const int code = codeOfSaving(storeIn(small));
        const std::filesystem::directory_iterator found(small + "/updates");
        if (storeIn(small).load() != older || std::distance(begin(found), end(found)) != 1) return 1;
        return code;
    };
    // One page for the record, and then three entries: the root, the folder and the record.
    const int withoutBytes = inSmallFileSystem(small, "size=4096", saving);
    if (withoutBytes < 0) GTEST_SKIP() << "only root may mount a small file system";
    EXPECT_EQ(withoutBytes, ENOSPC);
    EXPECT_EQ(inSmallFileSystem(small, "nr_inodes=3", saving), replacementFailed + ENOSPC);
}

TEST_F(UpdateRecordOnDisk, AReaderSeesAWholeRecordAtAnyTime) {
    store().save(older);
    std::jthread writer([&](const std::stop_token& stop) {
        for (bool odd = false; !stop.stop_requested(); odd = !odd) store().save(odd ? older : newer);
    });
    bool sawOther = false;
    for (int i = 0; i < 100'000 && !(sawOther && i > 300); ++i) {
        const auto record = store().load();
        ASSERT_TRUE(record);
        ASSERT_TRUE(*record == older || *record == newer);
        sawOther = sawOther || *record == newer;
    }
    EXPECT_TRUE(sawOther);
}

} // namespace
} // namespace vesk::test
