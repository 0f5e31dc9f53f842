// The built program: arguments in; standard output, standard error, status and files out.

#include "VeskPlatform/Linux/PosixFileReader.hpp"
#include "VeskPlatform/Linux/PropertyListBundleInformation.hpp"
#include "tests/support/ProgramRun.hpp"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>
#include <sys/stat.h>

namespace vesk {
namespace {

using test::ProgramResult;
using test::ProgramRun;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;

const std::string broker = VESK_BINARY_DIR "/bin/VeskCapabilityBroker";

class BrokerProgram : public testing::Test {
protected:
    ProgramRun program{broker};
    const std::filesystem::path& folder = program.folder();

    /// Runs a shell script that has the broker's path in BROKER.
    ProgramResult shell(const std::string& script) {
        ProgramRun runner("/bin/sh");
        runner.environment["BROKER"] = broker;
        runner.environment["HOME"] = folder.string();
        return runner.run({"-c", script});
    }
    void hold(const std::string& name, const std::string& text) { std::ofstream(folder / name) << text; }
    unsigned mode(const std::filesystem::path& path) {
        struct stat information {};
        EXPECT_EQ(::stat(path.c_str(), &information), 0) << path;
        return information.st_mode & 07777U;
    }
    static void expectOneFatalLine(const ProgramResult& result, const std::string& start) {
        EXPECT_EQ(result.status, 1) << result;
        EXPECT_EQ(result.output, "") << result;
        EXPECT_THAT(result.errorOutput, StartsWith("[capability-broker] fatal error Error Domain=" + start)) << result;
        EXPECT_EQ(std::count(result.errorOutput.begin(), result.errorOutput.end(), '\n'), 1) << result;
        EXPECT_THAT(result.errorOutput, testing::EndsWith("}\n")) << result;
    }
};

TEST_F(BrokerProgram, StatusIsADocumentAndOneLineBreak) {
    const auto result = program.run({"status"});
    EXPECT_EQ(result.status, 0) << result;
    EXPECT_EQ(result.errorOutput, "") << result;
    EXPECT_THAT(result.output, StartsWith("{\n  \"brokerPath\" : \"\\/")) << result;
    EXPECT_THAT(result.output, testing::EndsWith("\n}\n")) << result;
    EXPECT_THAT(result.output, testing::Not(HasSubstr("bundlePath"))) << result;
    EXPECT_THAT(result.output, testing::Not(HasSubstr("icloud"))) << result;
}

TEST_F(BrokerProgram, CarriesTheRightToScript) {
    PosixFileReader files;
    EXPECT_EQ(PropertyListBundleInformation(files).entitlements(broker),
              (JsonValue::Object{{"com.apple.security.automation.apple-events", {true}}}));
}

TEST_F(BrokerProgram, AnApplicationTellsOfItsCloud) {
    const auto contents = folder / "Vesk.app/Contents";
    std::filesystem::create_directories(contents / "Helpers");
    std::filesystem::copy_file(broker, contents / "Helpers/VeskCapabilityBroker");
    std::ofstream(contents / "Info.plist") << R"(<plist version="1.0"><dict><key>VeskICloudEnabled</key><true/>
        </dict></plist>)";
    ProgramRun application(contents / "Helpers/VeskCapabilityBroker");
    EXPECT_THAT(application.run({"status"}).output, HasSubstr("Sign in to iCloud Drive on this Mac"));
    application.environment["VESK_CLOUD_DRIVE"] = folder.string();
    EXPECT_THAT(application.run({"status"}).output, HasSubstr("Vesk can use iCloud on this Mac."));
    application.environment["VESK_CLOUD_DRIVE"] = (folder / "none").string();
    std::ofstream(contents / "Info.plist") << R"(<plist version="1.0"><dict><key>VeskICloudServices</key>
        <array><string>CloudDocuments</string></array></dict></plist>)";
    EXPECT_THAT(application.run({"status"}).output, HasSubstr("missing part of its iCloud setup"));
    std::ofstream(contents / "entitlements.plist") << R"(<plist version="1.0"><dict>
        <key>com.apple.developer.icloud-services</key><array><string>CloudDocuments</string></array></dict></plist>)";
    EXPECT_THAT(application.run({"status"}).output, HasSubstr("missing part of its iCloud setup"))
        << "the executable has rights of its own, and they come first";
}

TEST_F(BrokerProgram, StatusLeavesNothingBehind) {
    program.run({"status"});
    EXPECT_TRUE(std::filesystem::is_empty(folder));
}

TEST_F(BrokerProgram, UsageErrorsAreOneLine) {
    expectOneFatalLine(program.run({}), "VeskCapabilityBroker Code=64 \"Missing command. Use one of: status, ");
    expectOneFatalLine(program.run({"--help"}), "VeskCapabilityBroker Code=64 \"Unknown command: --help\" ");
    expectOneFatalLine(program.run({"a\nb"}), "VeskCapabilityBroker Code=64 \"Unknown command: a b\" ");
    expectOneFatalLine(program.run({"\xFF\xFE"}), "VeskCapabilityBroker Code=64 \"Unknown command: \uFFFD\uFFFD\" ");
}

TEST_F(BrokerProgram, FullDiskIsAFailure) {
    expectOneFatalLine(shell("\"$BROKER\" status > /dev/full"), "NSPOSIXErrorDomain Code=28 ");
}

TEST_F(BrokerProgram, ClosedStandardOutputIsAFailure) {
    expectOneFatalLine(shell("\"$BROKER\" status >&-"), "NSPOSIXErrorDomain Code=9 ");
}

TEST_F(BrokerProgram, ReaderThatWentAwayIsAFailure) {
    // Opened for both ends, then left with the writing one alone.
    const auto result = shell("mkfifo p; exec 3<>p 4>p 3<&-; \"$BROKER\" status >&4");
    expectOneFatalLine(result, "NSPOSIXErrorDomain Code=32 ");
}

TEST_F(BrokerProgram, ClosedStandardErrorLeavesTheStatus) {
    EXPECT_EQ(shell("\"$BROKER\" bogus 2>&-").status, 1);
    EXPECT_EQ(shell("\"$BROKER\" bogus 2>/dev/full").status, 1);
    EXPECT_EQ(shell("\"$BROKER\" status <&- 2>&- >/dev/null").status, 0);
}

TEST_F(BrokerProgram, RequestWithNobodyToAskReportsTheState) {
    for (const std::string kind : {"calendar", "reminders", "contacts", "microphone"}) {
        const auto result = program.run({"request", kind});
        EXPECT_EQ(result.status, 0) << result;
        EXPECT_EQ(result.errorOutput, "") << result;
        EXPECT_THAT(result.output, HasSubstr("\"requested\" : \"" + kind + "\"")) << result;
        EXPECT_THAT(result.output, HasSubstr("\"state\" : \"not_determined\"")) << result;
    }
    for (const std::string kind : {"screen_recording", "system_audio", "accessibility", "full_disk_access", "icloud"})
        EXPECT_EQ(program.run({"request", kind}).status, 0) << kind;
}

TEST_F(BrokerProgram, OpenSettingsAlwaysPrintsAReport) {
    for (const std::string kind : {"icloud", "calendar"}) {
        const auto result = program.run({"open-settings", kind});
        EXPECT_EQ(result.status, 0) << result;
        EXPECT_THAT(result.output, HasSubstr("\"requested\" : \"" + kind + "\"")) << result;
    }
}

TEST_F(BrokerProgram, QueuedLinesOfTheLogAreOnDiskWhenItEnds) {
    program.environment["VESK_APP_SUPPORT_DIR"] = (folder / "support").string();
    const auto result = program.run({"calendar-today"});
    expectOneFatalLine(result, "");
    const auto log = folder / "support/logs/shell-debug.log";
    std::stringstream text;
    text << std::ifstream(log).rdbuf();
    EXPECT_THAT(text.str(),
                MatchesRegex("\\[[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9:]{8}\\.[0-9]{3}Z\\] calendar-operation "
                             "requestFullAccess begin [^\n]*\n\\[[^\n]*\\] calendar-operation requestFullAccess "
                             "completed [^\n]*\n"));
    EXPECT_EQ(mode(log), 0600U);
    EXPECT_EQ(mode(log.parent_path()), 0700U);
    std::filesystem::permissions(log, std::filesystem::perms(0644));
    program.run({"calendar-today"});
    EXPECT_EQ(mode(log), 0600U);
}

TEST_F(BrokerProgram, RequestFilesThatCannotBeRead) {
    hold("broken.json", "{");
    hold("legal.json", R"({"html":"h","outputPath":"o","paperSize":"legal"})");
    hold("blank.json", R"({"html":"  ","outputPath":"/tmp/a.pdf"})");
    std::filesystem::create_directory(folder / "folder");
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    std::filesystem::resize_file((hold("huge.json", ""), folder / "huge.json"), std::uintmax_t{1} << 30);
    const auto run = [&](const std::string& name) { return program.run({"pdf-render-html", "--request", name}); };
    expectOneFatalLine(run("none.json"), "NSPOSIXErrorDomain Code=2 \"none.json: ");
    expectOneFatalLine(run("folder"), "NSPOSIXErrorDomain Code=21 \"folder: ");
    expectOneFatalLine(run("pipe"), "NSPOSIXErrorDomain Code=22 \"pipe: ");
    expectOneFatalLine(run("huge.json"), "NSPOSIXErrorDomain Code=27 \"huge.json: ");
    expectOneFatalLine(run("broken.json"), "NSCocoaErrorDomain Code=4864 ");
    expectOneFatalLine(run("legal.json"), "NSCocoaErrorDomain Code=4864 ");
    expectOneFatalLine(run((folder / "blank.json").string()),
                       "VeskCapabilityBroker Code=64 \"PDF render request is missing HTML content.\"");
}

} // namespace
} // namespace vesk
