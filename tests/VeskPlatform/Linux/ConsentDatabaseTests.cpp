#include "VeskPlatform/Linux/ConsentDatabase.hpp"
#include "VeskPlatform/Linux/SqliteConnection.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <gmock/gmock.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vesk::test {
namespace {

using ::testing::HasSubstr;

struct ConsentDatabaseTests : ::testing::Test {
    TemporaryFolder folder;
    ConsentDatabase database{folder / "a/state", std::chrono::milliseconds(20)};
    const ConsentDecision grant{ConsentState::granted, "vesk consent", "2026-04-26T08:30:00.000Z"};
    const ConsentDecision denial{ConsentState::denied, "dialog", "2026-04-26T09:30:00.000Z"};

    /// Code and text of the failure of `call`.
    template <class Call> std::pair<std::int64_t, std::string> failureOf(Call call) {
        try {
            call();
            return {0, ""};
        } catch (const ConsentDatabaseError& error) {
            return {error.code(), error.description()};
        }
    }
    SqliteConnection connection() { return {database.path(), std::chrono::milliseconds(0)}; }
};

TEST_F(ConsentDatabaseTests, ReadingAndResettingCreateNothing) {
    EXPECT_TRUE(database.decisions().empty());
    EXPECT_EQ(database.state("calendar"), ConsentState::notDetermined);
    database.reset({"calendar"});
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST_F(ConsentDatabaseTests, FolderAndFileArePrivateWhateverTheMask) {
    const mode_t before = ::umask(0);
    database.decide({"calendar"}, grant);
    ::umask(before);
    EXPECT_EQ(folder.mode("a"), 0700U);
    EXPECT_EQ(folder.mode("a/state"), 0700U);
    EXPECT_EQ(folder.mode("a/state/consent.sqlite"), 0600U);
    ::chmod(database.path().c_str(), 0644);
    database.decide({"calendar"}, grant);
    EXPECT_EQ(folder.mode("a/state/consent.sqlite"), 0600U) << "a widened file is tightened";
}

TEST_F(ConsentDatabaseTests, TheLastDecisionCounts) {
    database.decide({"calendar", "mail"}, grant);
    database.decide({"calendar"}, denial);
    EXPECT_EQ(database.decisions(), (std::map<std::string, ConsentDecision>{{"calendar", denial}, {"mail", grant}}));
    database.reset({"calendar", "never decided"});
    EXPECT_EQ(database.decisions(), (std::map<std::string, ConsentDecision>{{"mail", grant}}));
}

TEST_F(ConsentDatabaseTests, OfTwoAnswersTheFirstStands) {
    EXPECT_EQ(database.decideFirst("calendar", denial), ConsentState::denied);
    EXPECT_EQ(database.decideFirst("calendar", grant), ConsentState::denied);
    EXPECT_EQ(database.decisions().at("calendar"), denial);
    database.decide({"mail"}, {ConsentState::notDetermined, "x", "y"});
    EXPECT_EQ(database.decideFirst("mail", grant), ConsentState::granted);
}

TEST_F(ConsentDatabaseTests, ALockedDatabaseIsToldWithItsPath) {
    database.decide({"calendar"}, grant);
    auto other = connection();
    other.run("BEGIN EXCLUSIVE");
    for (const auto& [code, text] :
         {failureOf([&] { database.decisions(); }), failureOf([&] { database.decide({"calendar"}, denial); }),
          failureOf([&] { database.reset({"calendar"}); })}) {
        EXPECT_EQ(code, SQLITE_BUSY);
        EXPECT_EQ(text, "The consent database " + database.path() + " is locked by another program.");
    }
    other.run("ROLLBACK");
    EXPECT_EQ(database.state("calendar"), ConsentState::granted);
}

TEST_F(ConsentDatabaseTests, AnotherReaderDoesNotLock) {
    database.decide({"calendar"}, grant);
    auto other = connection();
    SqliteQuery query(other, "SELECT * FROM consent");
    ASSERT_TRUE(query.next());
    EXPECT_EQ(database.state("calendar"), ConsentState::granted);
}

TEST_F(ConsentDatabaseTests, ADamagedDatabaseIsToldAndLeftAsItIs) {
    const std::string bytes(8192, 'x');
    folder.write("a/state/consent.sqlite", bytes);
    for (const auto& [code, text] :
         {failureOf([&] { database.decisions(); }), failureOf([&] { database.decide({"calendar"}, grant); })}) {
        EXPECT_EQ(code, SQLITE_CORRUPT);
        EXPECT_THAT(text, HasSubstr("The consent database " + database.path() + " is damaged: "));
    }
    EXPECT_EQ(folder.read("a/state/consent.sqlite"), bytes);
}

TEST_F(ConsentDatabaseTests, TablesAndStatesOfAnotherKindAreDamage) {
    database.decide({"calendar"}, grant);
    auto other = connection();
    other.run("PRAGMA ignore_check_constraints = 1; UPDATE consent SET state = 4");
    EXPECT_EQ(failureOf([&] { database.decisions(); }).first, SQLITE_CORRUPT);
    other.run("UPDATE consent SET state = 'granted'");
    EXPECT_EQ(failureOf([&] { database.decisions(); }).first, SQLITE_CORRUPT);
    other.run("DROP TABLE consent; CREATE TABLE consent (other)");
    EXPECT_EQ(failureOf([&] { database.decisions(); }).first, SQLITE_CORRUPT);
}

TEST_F(ConsentDatabaseTests, AnEmptyFileHasNoDecisionsAndCanBeWritten) {
    folder.write("a/state/consent.sqlite", "");
    EXPECT_TRUE(database.decisions().empty());
    database.decide({"calendar"}, grant);
    EXPECT_EQ(database.state("calendar"), ConsentState::granted);
}

TEST_F(ConsentDatabaseTests, AFolderOrAPipeInTheFilesPlaceIsToldWithoutWaiting) {
    std::filesystem::create_directories(database.path());
    EXPECT_THAT(failureOf([&] { database.decisions(); }).second, HasSubstr(database.path() + ": Is a directory"));
    std::filesystem::remove(database.path());
    ASSERT_EQ(::mkfifo(database.path().c_str(), 0600), 0);
    EXPECT_THAT(failureOf([&] { database.decisions(); }).second, HasSubstr(database.path() + ": Invalid argument"));
    EXPECT_NE(failureOf([&] { database.decide({"calendar"}, grant); }).first, 0);
}

TEST_F(ConsentDatabaseTests, WithoutAHomeThereAreNoDecisionsAndNoneCanBeMade) {
    ConsentDatabase nowhere("");
    EXPECT_TRUE(nowhere.decisions().empty());
    EXPECT_THAT(failureOf([&] { nowhere.decide({"calendar"}, grant); }).second, HasSubstr("home directory"));
}

/// Runs `body` in a process of a user without rights; true where it succeeds.
template <class Body> bool asNobody(Body body) {
    const pid_t child = ::fork();
    if (child == 0) {
        if (::getuid() == 0 && ::setuid(65534) != 0) ::_exit(2);
        ::_exit(body() ? 0 : 1);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST_F(ConsentDatabaseTests, AReadOnlyDatabaseCanBeReadAndTellsThatItCannotBeWritten) {
    database.decide({"calendar"}, grant);
    ::chmod(folder.path().c_str(), 0755);
    ::chmod((folder / "a").c_str(), 0755);
    ::chmod((folder / "a/state").c_str(), 0555);
    ::chmod(database.path().c_str(), 0444);
    EXPECT_TRUE(asNobody([&] { return database.state("calendar") == ConsentState::granted; }));
    EXPECT_TRUE(asNobody([&] {
        const auto [code, text] = failureOf([&] { database.decide({"calendar"}, denial); });
        return code == SQLITE_READONLY && text == "The consent database " + database.path() + " cannot be written.";
    }));
    ::chmod((folder / "a/state").c_str(), 0700);
}

TEST_F(ConsentDatabaseTests, AnUnreadableFolderIsAFailureAndNotAnEmptyDatabase) {
    database.decide({"calendar"}, grant);
    ::chmod(folder.path().c_str(), 0755);
    ::chmod((folder / "a").c_str(), 0);
    EXPECT_TRUE(asNobody([&] {
        return failureOf([&] { database.decisions(); }).second.find("Permission denied") != std::string::npos;
    }));
    ::chmod((folder / "a").c_str(), 0700);
}

TEST_F(ConsentDatabaseTests, ManyProcessesAtOnceLoseNothing) {
    constexpr int processes = 4, decisions = 10;
    std::vector<pid_t> children;
    for (int p = 0; p < processes; ++p) {
        const pid_t child = ::fork();
        if (child == 0) {
            ConsentDatabase own(folder / "a/state", std::chrono::seconds(20));
            for (int d = 0; d < decisions; ++d) own.decide({std::to_string(p) + "-" + std::to_string(d)}, grant);
            ::_exit(0);
        }
        children.push_back(child);
    }
    for (const pid_t child : children) {
        int status = 0;
        ::waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
    }
    EXPECT_EQ(database.decisions().size(), static_cast<std::size_t>(processes * decisions));
}

TEST_F(ConsentDatabaseTests, AWriterKilledInTheMiddleLeavesTheOldState) {
    database.decide({"calendar"}, grant);
    const pid_t child = ::fork();
    if (child == 0) {
        auto writer = connection();
        writer.run("PRAGMA cache_size = 1; BEGIN IMMEDIATE; UPDATE consent SET state = 2");
        for (int i = 0; i < 2000; ++i)
            writer.run("INSERT INTO consent VALUES ('" + std::to_string(i) + "', 2, 'x', 'y')");
        ::_exit(0); // as a kill: neither commit nor rollback
    }
    ::waitpid(child, nullptr, 0);
    ASSERT_TRUE(folder.exists("a/state/consent.sqlite-journal")) << "the test needs a hot journal";
    EXPECT_EQ(database.decisions(), (std::map<std::string, ConsentDecision>{{"calendar", grant}}));
}

} // namespace
} // namespace vesk::test
