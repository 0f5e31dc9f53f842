#include "tests/VeskShellCore/UpdateRecords.hpp"
#include "tests/support/Privileges.hpp"
#include "tests/vesk/CompanionTest.hpp"

#include <fstream>

namespace vesk::test {
namespace {

namespace fs = std::filesystem;

constexpr const char* update = "0e984725-c51c-4bf4-9960-e1c80e27aba0";
constexpr const char* otherUpdate = "11111111-2222-4333-8444-555555555555";
constexpr const char* nothing = "{\n\n}\n";

class UpdateRecordProgram : public CompanionTest {
protected:
    const fs::path file = program.folder() / "Library/Application Support/Vesk/updates/update-activation.json";

    static void put(const fs::path& path, const std::string& bytes) {
        fs::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << bytes;
    }
    std::string output(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), "update-record");
        const ProgramResult result = vesk(arguments);
        EXPECT_EQ(result.status, 0) << result;
        EXPECT_EQ(result.errorOutput, "") << result;
        return result.output;
    }
};

TEST_F(UpdateRecordProgram, WithoutARecordThereIsNothingToShowOrDelete) {
    EXPECT_EQ(output({"show"}), nothing);
    EXPECT_EQ(output({"delete"}), nothing);
    EXPECT_EQ(output({"delete", "--expect", update}), nothing);
    EXPECT_FALSE(fs::exists(program.folder() / "Library"));
}

TEST_F(UpdateRecordProgram, ShowsTheRecord) {
    put(file, updateRecordLiteral + "\n");
    EXPECT_EQ(output({"show"}), updateRecordLiteral + "\n");
}

TEST_F(UpdateRecordProgram, DeletesWhateverIsThere) {
    put(file, "{");
    EXPECT_EQ(output({"delete"}), nothing);
    EXPECT_FALSE(fs::exists(file));
}

TEST_F(UpdateRecordProgram, DeletesOnlyTheExpectedUpdate) {
    put(file, updateRecordLiteral);
    EXPECT_EQ(output({"delete", "--expect", otherUpdate}), nothing);
    EXPECT_TRUE(fs::exists(file));
    EXPECT_EQ(output({"delete", "--expect", update}), nothing);
    EXPECT_FALSE(fs::exists(file));
}

TEST_F(UpdateRecordProgram, FailuresAreToldAndChangeNothing) {
    const std::string invalid = "Vesk found invalid update recovery data.",
                      unsupported = "Vesk found update recovery data from an unsupported version.";
    put(file, "{");
    expectFailure({"update-record", "show"}, invalid);
    expectFailure({"update-record", "delete", "--expect", update}, invalid);
    put(file, R"({"schema_version":2})");
    expectFailure({"update-record", "show"}, unsupported);
    expectFailure({"update-record", "delete", "--expect", update}, unsupported);
    EXPECT_TRUE(fs::exists(file));
}

TEST_F(UpdateRecordProgram, AFileThatMayNotBeReadIsAFailure) {
    put(file, updateRecordLiteral);
    fs::permissions(file, fs::perms::none);
    program.launcher = withoutPrivileges();
    expectFailure({"update-record", "show"}, file.string() + ": Permission denied");
}

TEST_F(UpdateRecordProgram, TheSupportFolderOfTheEnvironmentIsFollowed) {
    put(file, "{");
    const fs::path support = program.folder() / "support";
    put(support / "updates/update-activation.json", updateRecordLiteral);
    program.environment["VESK_APP_SUPPORT_DIR"] = " " + support.string() + " ";
    EXPECT_EQ(output({"show"}), updateRecordLiteral + "\n");
    program.environment["VESK_APP_SUPPORT_DIR"] = "support";
    EXPECT_EQ(output({"show"}), updateRecordLiteral + "\n");
    program.environment["VESK_APP_SUPPORT_DIR"] = " ";
    expectFailure({"update-record", "show"}, "Vesk found invalid update recovery data.");
}

TEST_F(UpdateRecordProgram, AnotherFileCanBeNamed) {
    put(program.folder() / "own.json", updateRecordLiteral);
    EXPECT_EQ(output({"show", "--file", "own.json"}), updateRecordLiteral + "\n");
    EXPECT_EQ(output({"delete", "--expect", update, "--file", (program.folder() / "own.json").string()}), nothing);
    EXPECT_FALSE(fs::exists(program.folder() / "own.json"));
    EXPECT_EQ(output({"show", "--file", "none/own.json"}), nothing);
    fs::create_directory(program.folder() / "folder");
    expectFailure({"update-record", "delete", "--file", "folder"},
                  (program.folder() / "folder").string() + ": Is a directory");
}

TEST_F(UpdateRecordProgram, AWrongCommandLineShowsItsUsage) {
    put(file, updateRecordLiteral);
    for (const std::string text : {"", "0E984725", "{0e984725-c51c-4bf4-9960-e1c80e27aba0}"})
        expectUsage({"update-record", "delete", "--expect", text}, "vesk update-record delete",
                    "--expect needs a UUID, not \"" + text + "\".");
    expectUsage({"update-record", "show", "--file", " "}, "vesk update-record show", "PATH names nothing.");
    expectUsage({"update-record"}, "vesk update-record", "A subcommand is required");
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"update-record", "show", "--expect", update},
          {"update-record", "delete", update},
          {"update-record", "delete", "--expect"},
          {"update-record", "save"}})
        EXPECT_EQ(vesk(arguments).status, 2) << arguments.back();
    EXPECT_TRUE(fs::exists(file));
}

} // namespace
} // namespace vesk::test
