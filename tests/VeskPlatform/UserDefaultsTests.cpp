#include "VeskPlatform/Linux/SqliteUserDefaults.hpp"
#include "tests/contracts/UserDefaultsContract.hpp"
#include "tests/fakes/FakeUserDefaults.hpp"
#include "tests/support/RefusedCalls.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <chrono>
#include <csignal>
#include <sqlite3.h>
#include <sys/resource.h>
#include <sys/stat.h>

namespace vesk::test {
namespace {

struct FakeWorld {
    FakeUserDefaults fake;
    UserDefaults& defaults() { return fake; }
    UserDefaults& again() { return fake; }
};

struct SqliteWorld {
    TemporaryFolder folder;
    /// Many threads take turns here, and on a busy disk each turn takes its time.
    static constexpr std::chrono::seconds patience{60};
    SqliteUserDefaults first{folder / "state", patience}, second{folder / "state", patience};
    UserDefaults& defaults() { return first; }
    UserDefaults& again() { return second; }
};

using Worlds = ::testing::Types<FakeWorld, SqliteWorld>;
INSTANTIATE_TYPED_TEST_SUITE_P(All, UserDefaultsContract, Worlds);

class SqliteUserDefaultsTests : public ::testing::Test {
protected:
    TemporaryFolder folder;
    SqliteUserDefaults defaults{folder.path()};

    /// Nothing is there, and nothing that is written comes back.
    static void expectOfNoUse(SqliteUserDefaults& broken) {
        EXPECT_EQ(broken.string("key"), std::nullopt);
        broken.setString("key", "value");
        broken.setData("key", "value");
        EXPECT_EQ(broken.string("key"), std::nullopt);
        EXPECT_EQ(broken.data("key"), std::nullopt);
        broken.remove("key");
    }
};

TEST_F(SqliteUserDefaultsTests, FileAndFolderAreTheUsersAlone) {
    const ::mode_t mask = ::umask(0);
    SqliteUserDefaults made(folder / "deep/state");
    made.setString("key", "value");
    ::umask(mask);
    EXPECT_EQ(folder.mode("deep/state"), 0700U);
    EXPECT_EQ(folder.mode("deep/state/defaults.sqlite"), 0600U);
}

TEST_F(SqliteUserDefaultsTests, AFileThatIsOpenToOthersIsTightened) {
    defaults.setString("key", "value");
    ::chmod(defaults.path().c_str(), 0644);
    defaults.setString("key", "other");
    EXPECT_EQ(folder.mode("defaults.sqlite"), 0600U);
}

TEST_F(SqliteUserDefaultsTests, ReadingAndRemovingMakeNoFile) {
    EXPECT_EQ(defaults.string("key"), std::nullopt);
    defaults.remove("key");
    EXPECT_FALSE(folder.exists("defaults.sqlite"));
}

TEST_F(SqliteUserDefaultsTests, GarbageIsNothingAndStays) {
    const std::string garbage(5000, 'x');
    folder.write("defaults.sqlite", garbage);
    expectOfNoUse(defaults);
    EXPECT_EQ(folder.read("defaults.sqlite"), garbage);
}

TEST_F(SqliteUserDefaultsTests, AnEmptyFileIsAStoreWithoutValues) {
    folder.write("defaults.sqlite", "");
    EXPECT_EQ(defaults.string("key"), std::nullopt);
    defaults.setString("key", "value");
    EXPECT_EQ(defaults.string("key"), "value");
}

TEST_F(SqliteUserDefaultsTests, AFolderInTheFilesPlaceIsOfNoUse) {
    std::filesystem::create_directory(defaults.path());
    expectOfNoUse(defaults);
}

TEST_F(SqliteUserDefaultsTests, WithoutAHomeThereIsNothing) {
    SqliteUserDefaults homeless("");
    expectOfNoUse(homeless);
}

TEST_F(SqliteUserDefaultsTests, AFileInTheFoldersPlaceIsOfNoUse) {
    SqliteUserDefaults misplaced(folder.write("file", "") + "/state");
    expectOfNoUse(misplaced);
}

/// A file that may not grow is as good as a full disk.
TEST_F(SqliteUserDefaultsTests, AFullDiskKeepsTheOldValue) {
    defaults.setString("key", "old");
    EXPECT_EQ(inChild([&] {
                  ::signal(SIGXFSZ, SIG_IGN);
                  const rlimit limit{8192, 8192};
                  ::setrlimit(RLIMIT_FSIZE, &limit);
                  defaults.setData("key", std::string(100'000, 'x'));
                  return defaults.string("key") == "old" ? 0 : 1;
              }),
              0);
    EXPECT_EQ(defaults.string("key"), "old");
    defaults.setString("key", "new");
    EXPECT_EQ(defaults.string("key"), "new");
}

TEST_F(SqliteUserDefaultsTests, AnotherProgramsLockIsWaitedForAndNoLonger) {
    SqliteUserDefaults impatient(folder.path(), std::chrono::milliseconds(20));
    impatient.setString("key", "old");
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(defaults.path().c_str(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
    impatient.setString("key", "new");
    EXPECT_EQ(impatient.string("key"), std::nullopt);
    ASSERT_EQ(sqlite3_exec(other, "COMMIT", nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(other);
    EXPECT_EQ(impatient.string("key"), "old");
}

/// Two processes begin with no file at all, and lose nothing of what either writes.
TEST_F(SqliteUserDefaultsTests, TwoProcessesWriteAtOnce) {
    constexpr int count = 20;
    const auto writeAll = [&](const std::string& prefix) {
        SqliteUserDefaults own(folder / "shared", std::chrono::seconds(30));
        for (int i = 0; i < count; ++i) own.setString(prefix + std::to_string(i), "value");
    };
    const pid_t child = ::fork();
    if (child == 0) {
        writeAll("child ");
        ::_exit(0);
    }
    writeAll("parent ");
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    SqliteUserDefaults shared(folder / "shared");
    for (const std::string prefix : {"child ", "parent "})
        for (int i = 0; i < count; ++i) EXPECT_EQ(shared.string(prefix + std::to_string(i)), "value") << prefix << i;
}

} // namespace
} // namespace vesk::test
