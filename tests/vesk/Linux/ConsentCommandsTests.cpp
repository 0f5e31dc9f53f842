#include "tests/support/TerminalRun.hpp"
#include "tests/vesk/CompanionTest.hpp"

#include <fstream>
#include <sqlite3.h>

namespace vesk::test {
namespace {

using ::testing::HasSubstr;

struct ConsentCommandsTests : CompanionTest {
    std::string stateOf(const std::string& id) const {
        const JsonValue list = json({"consent", "list", "--json"});
        for (const JsonValue& entry : listAt(list, "capabilities"))
            if (textAt(entry, "id") == id) return textAt(entry, "state");
        return "not listed";
    }
    void damageDatabase() const {
        std::filesystem::create_directories(state());
        std::ofstream(database()) << std::string(8192, 'x');
    }
};

TEST_F(ConsentCommandsTests, ListingShowsTheNineThatHaveAConsentAndCreatesNothing) {
    const JsonValue list = json({"consent", "list", "--json"});
    std::vector<std::string> ids;
    for (const JsonValue& entry : listAt(list, "capabilities")) {
        ids.push_back(textAt(entry, "id"));
        EXPECT_EQ(textAt(entry, "state"), "not_determined");
        EXPECT_FALSE(has(entry, "decidedAt"));
        EXPECT_FALSE(has(entry, "decidedBy"));
    }
    EXPECT_THAT(ids, ::testing::ElementsAre("screen_recording", "system_audio", "microphone", "accessibility",
                                            "calendar", "reminders", "contacts", "messages", "mail"));
    EXPECT_TRUE(std::filesystem::is_empty(program.folder()));
}

TEST_F(ConsentCommandsTests, TheTableIsForPeople) {
    vesk({"consent", "deny", "accessibility"});
    const ProgramResult result = vesk({"consent", "list"});
    EXPECT_THAT(result.output, ::testing::StartsWith("CAPABILITY        TITLE             STATE ")) << result;
    EXPECT_THAT(result.output,
                ::testing::ContainsRegex("accessibility +Computer control +denied +20.*Z +vesk consent"));
    EXPECT_THAT(result.output, ::testing::ContainsRegex("calendar +Calendar +not determined +- +-\n"));
}

TEST_F(ConsentCommandsTests, DecisionsPrintWhatTheyWereAbout) {
    const JsonValue granted = json({"consent", "grant", "mail", "calendar", "mail", "--yes", "--json"});
    const auto& entries = listAt(granted, "capabilities");
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ(textAt(entries[0], "id"), "mail");
    EXPECT_EQ(textAt(entries[1], "title"), "Calendar");
    EXPECT_EQ(textAt(entries[1], "state"), "granted");
    EXPECT_EQ(textAt(entries[1], "decidedBy"), "vesk consent");
    EXPECT_THAT(textAt(entries[1], "decidedAt"), ::testing::MatchesRegex("20..-..-..T..:..:......Z"));
    json({"consent", "deny", "calendar", "--json"});
    EXPECT_EQ(stateOf("calendar"), "denied");
    json({"consent", "reset", "calendar", "--json"});
    EXPECT_EQ(stateOf("calendar"), "not_determined");
    EXPECT_EQ(stateOf("mail"), "granted");
}

TEST_F(ConsentCommandsTests, SystemAudioIsDecidedWithScreenRecording) {
    json({"consent", "grant", "system_audio", "--yes", "--json"});
    EXPECT_EQ(stateOf("screen_recording"), "granted");
    json({"consent", "deny", "screen_recording", "--json"});
    EXPECT_EQ(stateOf("system_audio"), "denied");
}

TEST_F(ConsentCommandsTests, AllPassesOverWhatHasNoConsent) {
    const JsonValue list = json({"consent", "grant", "--all", "--yes", "--json"});
    EXPECT_EQ(listAt(list, "capabilities").size(), 9U);
    for (const JsonValue& entry : listAt(list, "capabilities")) EXPECT_EQ(textAt(entry, "state"), "granted");
    json({"consent", "reset", "--all", "--json"});
    EXPECT_EQ(stateOf("mail"), "not_determined");
}

TEST_F(ConsentCommandsTests, WhatHasNoConsentCannotBeDecided) {
    for (const char* name : {"full_disk_access", "icloud"})
        for (const char* verb : {"grant", "deny", "reset"})
            expectFailure({"consent", verb, "mail", name},
                          std::string(name) + " has no consent: it is what it is found to be.");
    EXPECT_FALSE(std::filesystem::exists(state())) << "all or nothing";
}

TEST_F(ConsentCommandsTests, GrantingWithoutATerminalNeedsYes) {
    expectFailure({"consent", "grant", "calendar"},
                  "There is no terminal to ask on. Nothing was changed; --yes grants without a question.");
    EXPECT_FALSE(std::filesystem::exists(state()));
}

TEST_F(ConsentCommandsTests, GrantingAsksOnceAtTheTerminal) {
    const struct {
        const char* name;
        const char* keys;
        int status;
        const char* state;
    } cases[] = {
        {"y", "y\n", 0, "granted"},
        {"yes", "yes\n", 0, "granted"},
        {"n", "n\n", 1, "not_determined"},
        {"empty", "\n", 1, "not_determined"},
        {"end of input", "\x04", 1, "not_determined"},
        {"interrupt", "\x03", 1, "not_determined"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        json({"consent", "reset", "--all", "--json"});
        TerminalRun run({companionProgram, "consent", "grant", "calendar", "mail"}, program.environment);
        run.waitFor("Calendar: Used when you ask Vesk to read or update Apple Calendar.");
        run.waitFor("Mail: ");
        run.waitFor("[y/N] ");
        run.type(c.keys);
        EXPECT_EQ(run.finish(), c.status) << run.shown();
        EXPECT_EQ(run.shown().find("vesk: Nothing was changed.\r\n") != std::string::npos, c.status != 0);
        EXPECT_EQ(stateOf("calendar"), c.state);
        EXPECT_EQ(stateOf("mail"), c.state);
    }
}

TEST_F(ConsentCommandsTests, ADamagedDatabaseIsNamed) {
    damageDatabase();
    for (const auto& arguments : std::vector<std::vector<std::string>>{
             {"consent", "list"}, {"consent", "grant", "mail", "--yes"}, {"consent", "reset", "--all"}}) {
        const ProgramResult result = vesk(arguments);
        EXPECT_EQ(result.status, 1) << result;
        EXPECT_THAT(result.errorOutput,
                    ::testing::StartsWith("vesk: The consent database " + database() + " is damaged: "))
            << result;
    }
}

TEST_F(ConsentCommandsTests, ALockedDatabaseIsNamed) {
    json({"consent", "deny", "mail", "--json"});
    sqlite3* lock = nullptr;
    ASSERT_EQ(sqlite3_open(database().c_str(), &lock), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(lock, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
    expectFailure({"consent", "list"}, "The consent database " + database() + " is locked by another program.");
    sqlite3_close(lock);
}

TEST_F(ConsentCommandsTests, AStateFolderThatCannotBeMadeIsNamed) {
    program.environment["VESK_STATE_DIR"] = "/proc/vesk";
    const ProgramResult result = vesk({"consent", "deny", "mail"});
    EXPECT_EQ(result.status, 1) << result;
    EXPECT_THAT(result.errorOutput, HasSubstr("vesk: The consent database cannot be used: /proc/vesk: ")) << result;
}

} // namespace
} // namespace vesk::test
