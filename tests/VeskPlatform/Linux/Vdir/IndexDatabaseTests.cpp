#include "VeskPlatform/Linux/Vdir/IndexDatabase.hpp"

#include "VeskPlatform/Linux/SqliteConnection.hpp"
#include "tests/support/Privileges.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace vesk::test {
namespace {

using vdir::IndexDatabase;
using Content = std::optional<std::string>;

struct IndexDatabaseTests : testing::Test {
    TemporaryFolder folder;
    const std::string path = folder / "cache/deep/calendars.sqlite";

    Content loaded(const std::string& collection = "/c") const { return IndexDatabase(path).load(collection); }
    void store(const std::string& bytes, const std::string& collection = "/c") const {
        IndexDatabase(path).store(collection, bytes);
    }
};

TEST_F(IndexDatabaseTests, KeepsBytesByCollection) {
    const std::string bytes("a\0b\xFF", 4);
    EXPECT_EQ(loaded(), std::nullopt);
    EXPECT_FALSE(folder.exists("cache"));
    store(bytes);
    store("other", "/caf\xE9");
    EXPECT_EQ(loaded(), bytes);
    EXPECT_EQ(loaded("/caf\xE9"), "other");
    store("new");
    EXPECT_EQ(loaded(), "new");
    EXPECT_EQ(folder.mode("cache/deep/calendars.sqlite"), 0600U);
}

TEST_F(IndexDatabaseTests, AnEmptyPathKeepsNothing) {
    IndexDatabase none("");
    none.store("/c", "x");
    EXPECT_EQ(none.load("/c"), std::nullopt);
}

TEST_F(IndexDatabaseTests, ADamagedFileReadsAsEmptyAndIsReplacedAtOnce) {
    store("first");
    const std::string whole = folder.read("cache/deep/calendars.sqlite");
    for (const auto& [name, bytes] : std::vector<std::pair<std::string, std::string>>{
             {"garbage", std::string(8192, 'x')},
             {"cut off", whole.substr(0, whole.size() - 5000)},
             {"empty", ""},
             {"zeros behind the header", whole.substr(0, 100) + std::string(whole.size() - 100, '\0')}}) {
        folder.write("cache/deep/calendars.sqlite", bytes);
        IndexDatabase database(path);
        EXPECT_EQ(database.load("/c"), std::nullopt) << name;
        database.store("/c", "again");
        EXPECT_EQ(loaded(), "again") << name;
    }
}

TEST_F(IndexDatabaseTests, ADatabaseWithOtherTablesIsReplaced) {
    folder.write("cache/deep/calendars.sqlite", "");
    SqliteConnection(path, std::chrono::milliseconds(10)).run("CREATE TABLE collection (path TEXT, other TEXT, x, y)");
    store("mine");
    EXPECT_EQ(loaded(), "mine");
}

TEST_F(IndexDatabaseTests, ALockedDatabaseReadsAsEmptyAndForgets) {
    store("before");
    SqliteConnection other(path, std::chrono::milliseconds(10));
    other.run("BEGIN EXCLUSIVE");
    EXPECT_EQ(loaded(), std::nullopt);
    store("lost");
    other.run("COMMIT");
    EXPECT_EQ(loaded(), "before");
}

TEST_F(IndexDatabaseTests, WhatCannotBeWrittenIsStillRead) {
    store("before");
    std::filesystem::permissions(path, std::filesystem::perms(0400));
    std::filesystem::permissions(folder / "cache/deep", std::filesystem::perms(0500));
    {
        const WithoutPrivileges ordinary;
        EXPECT_EQ(loaded(), "before");
        store("lost");
        EXPECT_EQ(loaded(), "before");
    }
    std::filesystem::permissions(folder / "cache/deep", std::filesystem::perms(0700));
}

TEST_F(IndexDatabaseTests, NoFolderOrNoFileThereIsNoMatter) {
    folder.write("cache", "a file in the folder's place");
    store("lost");
    EXPECT_EQ(loaded(), std::nullopt);
    EXPECT_EQ(folder.read("cache"), "a file in the folder's place");
    for (const bool isPipe : {true, false}) {
        const std::string odd = folder / (isPipe ? "pipe" : "folder");
        ASSERT_TRUE(isPipe ? ::mkfifo(odd.c_str(), 0600) == 0 : std::filesystem::create_directory(odd));
        IndexDatabase database(odd);
        EXPECT_EQ(database.load("/c"), std::nullopt);
        database.store("/c", "lost");
        EXPECT_EQ(database.load("/c"), std::nullopt);
    }
}

} // namespace
} // namespace vesk::test
