#include "tests/support/Privileges.hpp"
#include "tests/support/TemporaryFolder.hpp"
#include "tests/vesk/CompanionTest.hpp"

#include <fstream>
#include <sys/stat.h>

namespace vesk::test {
namespace {

using ::testing::HasSubstr;

/// The companion inside an application that is set up for the cloud, with a drive of the user's.
class FilesTests : public ::testing::Test {
protected:
    FilesTests() {
        std::filesystem::create_directories(contents / "MacOS");
        std::filesystem::create_directories(drive);
        std::filesystem::copy_file(companionProgram, contents / "MacOS/vesk");
        std::ofstream(contents / "Info.plist") << R"(<plist version="1.0"><dict><key>VeskICloudEnabled</key><true/>
            <key>VeskICloudContainerIdentifier</key><string>c</string></dict></plist>)";
        std::ofstream(contents / "entitlements.plist") << R"(<plist version="1.0"><dict>
            <key>com.apple.developer.icloud-container-identifiers</key><array><string>c</string></array></dict></plist>)";
        program.environment["VESK_CLOUD_DRIVE"] = drive.string();
        program.environment["XDG_DATA_HOME"] = (place / "data").string();
    }

    TemporaryFolder temporary;
    const std::filesystem::path place = temporary.path(), contents = place / "Vesk.app/Contents",
                                drive = place / "drive";
    ProgramRun program{contents / "MacOS/vesk"};

    std::string below(const std::string& name) const { return (drive / name).string(); }
    void put(const std::string& name, const std::string& text) const { temporary.write("drive/" + name, text); }

    ProgramResult files(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), "files");
        return program.run(arguments);
    }
    /// The JSON of a run that must succeed in silence.
    JsonValue json(const std::vector<std::string>& arguments) const {
        const ProgramResult result = files(arguments);
        EXPECT_EQ(result.status, 0) << result;
        EXPECT_EQ(result.errorOutput, "") << result;
        return parseJson(result.output);
    }
    void expectFailure(const std::vector<std::string>& arguments, const std::string& description) const {
        const ProgramResult result = files(arguments);
        EXPECT_EQ(result.status, 1) << result;
        EXPECT_EQ(result.output, "") << result;
        EXPECT_EQ(result.errorOutput, "vesk: " + description + "\n") << result;
    }
    void expectUsage(const std::vector<std::string>& arguments, const std::string& wrong) const {
        const ProgramResult result = files(arguments);
        EXPECT_EQ(result.status, 2) << result;
        EXPECT_EQ(result.output, "") << result;
        EXPECT_THAT(result.errorOutput, HasSubstr(wrong)) << result;
    }
};

TEST_F(FilesTests, TellsWhereTheFilesAre) {
    const JsonValue record = json({"root"});
    EXPECT_EQ(textAt(record, "scope"), "drive");
    EXPECT_EQ(textAt(record, "rootPath"), drive.string());
    EXPECT_EQ(textAt(record, "brokerPath"), "Vesk.app");
    EXPECT_EQ(textAt(record, "bundlePath"), (place / "Vesk.app").string());
    EXPECT_EQ(textAt(json({"root", "--scope", "app_documents"}), "rootPath"),
              (place / "data/vesk/containers/c/Documents").string());
    EXPECT_TRUE(std::filesystem::is_directory(place / "data/vesk/containers/c/Documents"));
}

TEST_F(FilesTests, ListsAFolder) {
    put("b.txt", "x");
    put("A.txt", "x");
    put("sub/inner", "x");
    put(".hidden", "x");
    const JsonValue record = json({"list"});
    ASSERT_EQ(listAt(record, "entries").size(), 3U);
    EXPECT_EQ(textAt(listAt(record, "entries")[0], "name"), "sub");
    EXPECT_EQ(textAt(listAt(record, "entries")[1], "name"), "A.txt");
    EXPECT_FALSE(has(record, "baseRelativePath"));
    EXPECT_EQ(textAt(json({"list", "./sub/"}), "baseRelativePath"), "sub");
    expectFailure({"list", "none"}, "The requested iCloud path does not exist.");
    expectFailure({"list", "b.txt"}, "The requested iCloud directory does not exist.");
}

TEST_F(FilesTests, AListEndsAtTwoHundred) {
    for (int i = 0; i < 300; ++i) put(std::to_string(i), "");
    EXPECT_EQ(listAt(json({"list"}), "entries").size(), 200U);
}

TEST_F(FilesTests, AListingIsOfTheUsersLocale) {
    put("z", "");
    put("\u00e4", "");
    program.environment["LC_ALL"] = "de_DE.UTF-8";
    EXPECT_EQ(textAt(listAt(json({"list"}), "entries")[0], "name"), "\u00e4");
    program.environment["LC_ALL"] = "sv_SE.UTF-8";
    EXPECT_EQ(textAt(listAt(json({"list"}), "entries")[0], "name"), "z");
}

TEST_F(FilesTests, TellsOfOneItem) {
    put("file", "12345");
    EXPECT_EQ(std::get<std::int64_t>(at(json({"stat", "file"}), "sizeBytes").value), 5);
    EXPECT_EQ(at(json({"stat", "none"}), "exists"), JsonValue{false});
    EXPECT_EQ(at(json({"stat"}), "isDirectory"), JsonValue{true});
}

TEST_F(FilesTests, WritesWhatStandardInputHolds) {
    program.input = "gr\u00fcn\n";
    EXPECT_EQ(std::get<std::int64_t>(at(json({"write", "a/b/new.txt"}), "sizeBytes").value), 6);
    EXPECT_EQ(temporary.read("drive/a/b/new.txt"), "gr\u00fcn\n");
    EXPECT_EQ(textAt(json({"read", "a/b/new.txt"}), "text"), "gr\u00fcn\n");
    program.input = "";
    expectFailure({"write", "a/b/new.txt"}, "The requested iCloud file already exists.");
    json({"write", "a/b/new.txt", "--overwrite"});
    EXPECT_EQ(temporary.read("drive/a/b/new.txt"), "");
    json({"write", "n", "--scope", "app_documents"});
    EXPECT_TRUE(std::filesystem::exists(place / "data/vesk/containers/c/Documents/n"));
}

TEST_F(FilesTests, ATextThatIsNoUtf8IsRefused) {
    program.input = "gr\xFCn";
    expectFailure({"write", "new"}, below("new") + ": The text is not UTF-8.");
    EXPECT_FALSE(std::filesystem::exists(below("new")));
    put("latin", "gr\xFCn");
    expectFailure({"read", "latin"}, below("latin") + ": The text is not UTF-8.");
}

TEST_F(FilesTests, AWriteThatFailsKeepsTheOldFile) {
    put("folder/file", "old");
    std::filesystem::permissions(below("folder"), std::filesystem::perms{0555});
    program.launcher = withoutPrivileges();
    program.input = "new";
    const ProgramResult result = files({"write", "folder/file", "--overwrite"});
    std::filesystem::permissions(below("folder"), std::filesystem::perms{0755});
    EXPECT_EQ(result.status, 1) << result;
    EXPECT_EQ(result.errorOutput, "vesk: " + below("folder/file") + ": Permission denied\n") << result;
    EXPECT_EQ(temporary.read("drive/folder/file"), "old");
}

TEST_F(FilesTests, MakesAFolder) {
    EXPECT_EQ(textAt(json({"mkdir", "a//b"}), "path"), below("a/b"));
    EXPECT_TRUE(std::filesystem::is_directory(below("a/b")));
    json({"mkdir", "a/b"});
}

TEST_F(FilesTests, Exports) {
    put("folder/seen", "x");
    put("folder/.hidden", "x");
    temporary.write("out/old", "old");
    const JsonValue record = json({"export", "folder", (place / "out").string()});
    EXPECT_EQ(std::get<std::int64_t>(at(record, "itemCount").value), 1);
    EXPECT_TRUE(temporary.exists("out/.hidden"));
    EXPECT_FALSE(temporary.exists("out/old"));
    EXPECT_EQ(textAt(json({"export", "folder/seen", "relative"}), "exportedPath"),
              (program.folder() / "relative").string());
}

TEST_F(FilesTests, AFailedExportSaysWhatWasRemoved) {
    std::filesystem::create_directories(below("folder"));
    ASSERT_EQ(::mkfifo(below("folder/pipe").c_str(), 0600), 0);
    temporary.write("out", "old");
    const std::string output = (place / "out").string();
    expectFailure({"export", "folder", output},
                  below("folder/pipe") + ": Invalid argument (what was at " + output + " has already been removed)");
    EXPECT_FALSE(temporary.exists("out"));
}

TEST_F(FilesTests, AnExportNeverRemovesTheDrive) {
    put("file", "x");
    for (const std::string& output : {drive.string(), place.string(), std::string("/"), below("file")})
        EXPECT_EQ(files({"export", "file", output}).status, 1) << output;
    EXPECT_TRUE(temporary.exists("drive/file"));
    expectUsage({"export", "file", ""}, "OUTPUT names nothing.");
    expectUsage({"export", "file"}, "output is required");
}

TEST_F(FilesTests, PathsStayBelowTheRoot) {
    temporary.write("secret", "x");
    put("a/b", "x");
    for (const char* path : {"../secret", "a/../../secret", " .. /secret", "a/.."})
        expectFailure({"read", path}, "iCloud paths cannot traverse outside the selected iCloud root.");
    expectFailure({"read", "/etc/passwd"}, "iCloud paths must be relative to the selected iCloud root.");
    EXPECT_EQ(textAt(json({"read", " a //./b "}), "path"), below("a/b"));
}

TEST_F(FilesTests, ANameThatIsNoUtf8IsListedAndReached) {
    put("\xFF.txt", "x");
    EXPECT_EQ(textAt(listAt(json({"list"}), "entries")[0], "name"), "\xEF\xBF\xBD.txt");
    EXPECT_EQ(textAt(json({"read", "\xFF.txt"}), "text"), "x");
}

TEST_F(FilesTests, ANameThatIsTooLongIsNotThere) {
    EXPECT_EQ(at(json({"stat", std::string(256, 'n')}), "exists"), JsonValue{false});
    expectFailure({"write", std::string(256, 'n')}, below(std::string(256, 'n')) + ": File name too long");
    json({"write", std::string(255, 'n')});
}

TEST_F(FilesTests, WithoutADriveItSaysWhatToDo) {
    program.environment.erase("VESK_CLOUD_DRIVE");
    expectFailure({"root"},
                  "Sign in to iCloud Drive on this Mac to use iCloud with Vesk. Open System Settings, sign in "
                  "to iCloud, and turn on iCloud Drive.");
    ProgramRun bare(companionProgram);
    EXPECT_EQ(bare.run({"files", "root"}).errorOutput,
              "vesk: This Vesk build is not configured for iCloud Drive access.\n");
}

TEST_F(FilesTests, PreparesALocalPath) {
    std::filesystem::create_directories(program.folder() / "Documents");
    const JsonValue record = json({"prepare", "~/Documents/a/b"});
    EXPECT_EQ(textAt(record, "status"), "ready");
    EXPECT_EQ(textAt(record, "probedPath"), (program.folder() / "Documents").string());
    EXPECT_EQ(textAt(json({"prepare", below("x")}), "probedPath"), drive.string());
    EXPECT_EQ(textAt(json({"prepare", "~"}), "status"), "broad_access_required");
    EXPECT_EQ(textAt(json({"prepare", "relative"}), "status"), "invalid");
    std::filesystem::permissions(program.folder() / "Documents", std::filesystem::perms::none);
    program.launcher = withoutPrivileges();
    EXPECT_EQ(textAt(json({"prepare", "~/Documents/a"}), "status"), "denied");
}

TEST_F(FilesTests, AWrongCommandLineShowsItsUsage) {
    expectUsage({}, "Usage: vesk files ");
    expectUsage({"read"}, "path is required");
    expectUsage({"list", "--scope", "elsewhere"}, "--scope");
    expectUsage({"prepare", "x", "--scope", "drive"}, "--scope");
    expectUsage({"read", "x", "--overwrite"}, "--overwrite");
}

} // namespace
} // namespace vesk::test
