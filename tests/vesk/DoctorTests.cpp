#include "tests/support/TemporaryFolder.hpp"
#include "tests/vesk/CompanionTest.hpp"
#include "vesk/StoreInspection.hpp"
#include "vesk/Table.hpp"

#include <fstream>

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
    program.environment["VESK_APP_SUPPORT_DIR"] = "/s";
    const JsonValue report = json({"doctor", "--json"});
    EXPECT_EQ(textAt(at(report, "places"), "stateFolder"), state());
    EXPECT_EQ(textAt(at(report, "places"), "cacheFolder"), "/c");
    EXPECT_EQ(textAt(at(report, "places"), "logFile"), "/s/logs/shell-debug.log");
    EXPECT_EQ(textAt(at(report, "calendars"), "path"), "/k");
    const std::string text = vesk({"doctor"}).output;
    EXPECT_THAT(text, HasSubstr("calendars  /k (does not exist yet)\n"));
    EXPECT_THAT(text, HasSubstr("log        /s/logs/shell-debug.log\n"));
    EXPECT_THAT(text, ::testing::ContainsRegex("calendar +Consent is not determined. +vesk consent grant calendar\n"));
}

TEST_F(DoctorTests, CountsCollections) {
    const auto root = program.folder() / "calendars";
    std::filesystem::create_directories(root / "home");
    std::ofstream(root / "home/a.ics") << "x";
    program.environment["VESK_CALENDARS_DIR"] = root.string();
    const JsonValue calendars = at(json({"doctor", "--json"}), "calendars");
    EXPECT_EQ(numberAt(calendars, "collections"), 1);
    EXPECT_EQ(numberAt(calendars, "files"), 1);
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

TEST(StoreInspectionTests, CollectionsOfAVdirRoot) {
    TemporaryFolder root;
    root.write("with-file/a.ics", "x");
    root.write("with-file/sub/b.ics", "x");
    root.write("named/displayname", "x");
    root.write("named/sub/b.ics", "x");
    root.write("coloured/color", "#fff");
    std::filesystem::create_directories(root / "empty");
    root.write("account/one/a.ics", "x");
    root.write("account/one/b.ics", "x");
    std::filesystem::create_directories(root / "account/two/deeper/still");
    root.write(".hidden/a.ics", "x");
    root.write("account/.hidden/a.ics", "x");
    root.write("with-file/.b.ics", "x");
    root.write("stray.ics", "x");
    const StoreReport report = inspectStore(root.path(), ".ics");
    EXPECT_TRUE(report.exists);
    EXPECT_EQ(report.collections, 6);
    EXPECT_EQ(report.files, 3);
    EXPECT_EQ(report.unreadableFiles, 0);
    EXPECT_EQ(report.unreadableFolders, 0);
    EXPECT_FALSE(inspectStore(root / "none", ".ics").exists);
    EXPECT_FALSE(inspectStore("", ".ics").exists);
}

TEST(StoreInspectionTests, AFileThatCannotBeReadIsCounted) {
    TemporaryFolder root;
    std::filesystem::create_directories(root / "home");
    std::filesystem::create_symlink("nowhere", root / "home/broken.ics");
    EXPECT_EQ(inspectStore(root.path(), ".ics").unreadableFiles, 1);
}

TEST(TableTests, ColumnsFitTheirWidestCell) {
    EXPECT_EQ(tableText({{"A", "LONG"}, {"längste", "b"}, {"x", ""}}), "A        LONG\nlängste  b\nx\n");
    EXPECT_EQ(tableText({{"a\x1b[2J\nb", "\xff"}}), "a [2J b  \xEF\xBF\xBD\n");
    EXPECT_EQ(tableText({}), "");
}

} // namespace
} // namespace vesk::test
