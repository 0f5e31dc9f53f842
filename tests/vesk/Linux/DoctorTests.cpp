#include "tests/support/Privileges.hpp"
#include "tests/vesk/CompanionTest.hpp"
#include "vesk/Table.hpp"

#include <fstream>
#include <map>

namespace vesk::test {
namespace {

using ::testing::HasSubstr;

struct DoctorTests : CompanionTest {
    static std::vector<std::string> problems(const JsonValue& report, const std::string& id) {
        std::vector<std::string> result;
        for (const JsonValue& c : listAt(report, "capabilities"))
            if (textAt(c, "id") == id)
                for (const JsonValue& finding : listAt(c, "findings")) result.push_back(textAt(finding, "problem"));
        return result;
    }
    static JsonValue store(const JsonValue& report, const std::string& name) {
        for (const JsonValue& found : listAt(report, "stores"))
            if (textAt(found, "name") == name) return found;
        ADD_FAILURE() << "no store " << name;
        return {};
    }
    /// Makes a store of these files, which the variable names from now on; its root.
    std::string makeStore(const std::string& variable, const std::map<std::string, std::string>& files) {
        const auto root = program.folder() / variable;
        for (const auto& [name, bytes] : files) {
            std::filesystem::create_directories((root / name).parent_path());
            std::ofstream(root / name, std::ios::binary) << bytes;
        }
        program.environment[variable] = root.string();
        return root.string();
    }
    std::string calendars(const std::map<std::string, std::string>& files) {
        return makeStore("VESK_CALENDARS_DIR", files);
    }
    static std::int64_t numberAt(const JsonValue& value, const std::string& key) {
        return std::get<std::int64_t>(at(value, key).value);
    }
};

TEST_F(DoctorTests, FindingsAreNoFailureAndLookingChangesNothing) {
    const JsonValue report = json({"doctor", "--json"});
    EXPECT_EQ(listAt(report, "capabilities").size(), 11U);
    EXPECT_THAT(problems(report, "calendar"), ::testing::ElementsAre("Consent is not determined."));
    EXPECT_THAT(problems(report, "screen_recording"), ::testing::Contains("No display can be reached."));
    EXPECT_TRUE(std::filesystem::is_empty(program.folder()));
}

TEST_F(DoctorTests, AGrantedCapabilityThatIsServedHasNoFindings) {
    json({"consent", "grant", "calendar", "--yes", "--json"});
    EXPECT_TRUE(problems(json({"doctor", "--json"}), "calendar").empty());
}

TEST_F(DoctorTests, TellsWhereThingsAre) {
    program.environment["VESK_CACHE_DIR"] = "/c";
    program.environment["VESK_CALENDARS_DIR"] = "/k";
    program.environment["VESK_REMINDERS_DIR"] = "/t";
    program.environment["VESK_APP_SUPPORT_DIR"] = "/s";
    const JsonValue report = json({"doctor", "--json"});
    EXPECT_EQ(textAt(at(report, "places"), "stateFolder"), state());
    EXPECT_EQ(textAt(at(report, "places"), "cacheFolder"), "/c");
    EXPECT_EQ(textAt(at(report, "places"), "logFile"), "/s/logs/shell-debug.log");
    EXPECT_EQ(textAt(store(report, "calendars"), "path"), "/k");
    EXPECT_EQ(textAt(store(report, "to-dos"), "path"), "/t");
    const std::string text = vesk({"doctor"}).output;
    EXPECT_THAT(text, HasSubstr("calendars  /k (does not exist yet)\n"));
    EXPECT_THAT(text, HasSubstr("to-dos     /t (does not exist yet)\n"));
    EXPECT_THAT(text, HasSubstr("log        /s/logs/shell-debug.log\n"));
    EXPECT_THAT(text, ::testing::ContainsRegex("calendar +Consent is not determined. +vesk consent grant calendar\n"));
}

TEST_F(DoctorTests, CountsCollectionsAndNamesFilesThatCannotBeParsed) {
    const std::string whole = "BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nUID:a\r\nDTSTART:20260426T080000Z\r\nEND:VEVENT\r\n"
                              "END:VCALENDAR\r\n";
    const auto root = calendars({{"home/whole.ics", whole},
                                 {"work/broken.ics", "x"},
                                 {"work/cut.ics", whole.substr(0, 50)},
                                 {"work/timeless.ics", "BEGIN:VCALENDAR\nBEGIN:VEVENT\nEND:VEVENT\nEND:VCALENDAR\n"}});
    const JsonValue report = json({"doctor", "--json"});
    const JsonValue found = store(report, "calendars");
    EXPECT_EQ(numberAt(found, "collections"), 2);
    EXPECT_EQ(numberAt(found, "files"), 4);
    EXPECT_EQ(listAt(found, "unparsableFiles").size(), 3U);
    EXPECT_TRUE(listAt(found, "unreadableFiles").empty());
    EXPECT_THAT(problems(report, "calendar"),
                ::testing::Contains("3 files that cannot be parsed: " + root + "/work/broken.ics, " + root
                                    + "/work/cut.ics, " + root + "/work/timeless.ics"));
    EXPECT_FALSE(std::filesystem::exists(program.folder() / ".cache"));
}

TEST_F(DoctorTests, CountsListsAndNamesTodosThatCannotBeShown) {
    const std::string whole = "BEGIN:VCALENDAR\nBEGIN:VTODO\nUID:a\nEND:VTODO\nEND:VCALENDAR\n";
    const auto root = makeStore(
        "VESK_REMINDERS_DIR",
        {{"home/whole.ics", whole},
         {"home/cut.ics", whole.substr(0, 40)},
         {"account/work/nameless.ics", "BEGIN:VCALENDAR\nBEGIN:VTODO\nSUMMARY:x\nEND:VTODO\nEND:VCALENDAR\n"}});
    const JsonValue report = json({"doctor", "--json"});
    const JsonValue found = store(report, "to-dos");
    EXPECT_EQ(textAt(found, "capability"), "reminders");
    EXPECT_EQ(numberAt(found, "collections"), 2);
    EXPECT_EQ(numberAt(found, "files"), 3);
    EXPECT_THAT(problems(report, "reminders"),
                ::testing::Contains("2 files that cannot be parsed: " + root + "/account/work/nameless.ics, " + root
                                    + "/home/cut.ics"));
    EXPECT_THAT(vesk({"doctor"}).output, HasSubstr("to-dos     " + root + " (collections: 2, files: 3)\n"));
}

TEST_F(DoctorTests, NamesTheFirstFewOfManyFiles) {
    std::map<std::string, std::string> files;
    for (int i = 0; i < 7; ++i) files["home/" + std::to_string(i) + ".ics"] = "";
    calendars(files);
    EXPECT_THAT(problems(json({"doctor", "--json"}), "calendar"),
                ::testing::Contains(::testing::EndsWith("/home/4.ics and 2 more")));
}

TEST_F(DoctorTests, ARootThatIsAFileIsAnUnreadableFolder) {
    const auto root = (program.folder() / "calendars").string();
    std::ofstream(root) << "x";
    program.environment["VESK_CALENDARS_DIR"] = root;
    EXPECT_THAT(problems(json({"doctor", "--json"}), "calendar"), ::testing::Contains("1 unreadable folder: " + root));
}

TEST_F(DoctorTests, WhatIsForbiddenIsNamed) {
    const std::pair<const char*, const char*> stores[] = {{"VESK_CALENDARS_DIR", "calendar"},
                                                          {"VESK_REMINDERS_DIR", "reminders"}};
    for (const auto& [variable, capability] : stores) {
        const auto root = makeStore(variable, {{"home/secret.ics", "x"}, {"work/a.ics", "x"}});
        std::filesystem::permissions(root + "/home/secret.ics", std::filesystem::perms::none);
        std::filesystem::permissions(root + "/work", std::filesystem::perms::none);
        program.launcher = withoutPrivileges();
        const ProgramResult result = vesk({"doctor", "--json"});
        std::filesystem::permissions(root + "/work", std::filesystem::perms::owner_all);
        ASSERT_EQ(result.status, 0) << result;
        EXPECT_THAT(problems(parseJson(result.output), capability),
                    ::testing::IsSupersetOf(
                        {"1 unreadable folder: " + root + "/work", "1 unreadable file: " + root + "/home/secret.ics"}));
    }
}

TEST_F(DoctorTests, AStateFolderThatIsAFileIsAFinding) {
    std::ofstream(state()) << "x";
    const JsonValue report = json({"doctor", "--json"});
    ASSERT_EQ(listAt(report, "findings").size(), 1U);
    EXPECT_EQ(textAt(listAt(report, "findings")[0], "problem"), "The state folder " + state() + " is no folder.");
}

TEST_F(DoctorTests, WhereItCannotLookItReportsTheRestAndFails) {
    std::filesystem::create_directories(state());
    std::ofstream(database()) << std::string(8192, 'x');
    const ProgramResult result = vesk({"doctor", "--json"});
    EXPECT_EQ(result.status, 1) << result;
    EXPECT_THAT(result.errorOutput, ::testing::StartsWith("vesk: The consent database " + database()));
    const JsonValue report = parseJson(result.output);
    for (const JsonValue& c : listAt(report, "capabilities")) EXPECT_FALSE(has(c, "consent"));
}

TEST(TableTests, ColumnsFitTheirWidestCell) {
    EXPECT_EQ(tableText({{"A", "LONG"}, {"längste", "b"}, {"x", ""}}), "A        LONG\nlängste  b\nx\n");
    EXPECT_EQ(tableText({{"a\x1b[2J\nb", "\xff"}}), "a [2J b  \xEF\xBF\xBD\n");
    EXPECT_EQ(tableText({}), "");
}

} // namespace
} // namespace vesk::test
