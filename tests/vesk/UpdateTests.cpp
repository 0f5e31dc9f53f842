#include "tests/support/SampleRuntime.hpp"
#include "tests/support/TemporaryFolder.hpp"
#include "tests/vesk/CompanionTest.hpp"

#include <filesystem>
#include <fstream>

namespace vesk::test {
namespace {

using ::testing::HasSubstr;
namespace fs = std::filesystem;

struct Release {
    std::string version, build, channel = "stable";
};
const Release oldRelease{"1.4.0", "212"}, newRelease{"1.5.0", "230"}, thirdRelease{"1.6.0", "250"};

/// An application with the sample runtime in it, which is replaced as an updater replaces it.
class UpdateTests : public ::testing::Test {
protected:
    UpdateTests() {
        program.environment = runtime.variables();
        program.environment["PATH"] = "/usr/bin:/bin";
        install(oldRelease);
        succeed({"runtime", "bootstrap", "install-launch-agent"});
        succeed({"runtime", "bootstrap", "install-core-tools"});
    }
    ~UpdateTests() override {
        program.environment.erase("VESK_SAMPLE_MISBEHAVE");
        program.run({"runtime", "bootstrap", "stop"});
    }

    /// The new application takes the place of the old one.
    void install(const Release& release) const {
        const fs::path fresh = fs::path(folder.path()) / "fresh.app/Contents";
        fs::create_directories(fresh / "MacOS");
        fs::create_directories(fresh / "Resources");
        fs::create_hard_link(fs::canonical(companionProgram), fresh / "MacOS/vesk");
        fs::copy(SampleRuntime::root(), fresh / "Resources/vesk-runtime", fs::copy_options::recursive);
        std::ofstream(fresh / "Info.plist")
            << R"(<plist version="1.0"><dict><key>CFBundleShortVersionString</key><string>)" << release.version
            << "</string><key>CFBundleVersion</key><string>" << release.build
            << "</string><key>VeskReleaseChannel</key><string>" << release.channel << "</string></dict></plist>";
        fs::remove_all(application);
        fs::rename(fs::path(folder.path()) / "fresh.app", application);
    }

    ProgramResult vesk(const std::vector<std::string>& arguments) const { return program.run(arguments); }
    JsonValue succeed(const std::vector<std::string>& arguments) const {
        const ProgramResult result = vesk(arguments);
        EXPECT_EQ(result.status, 0) << result;
        EXPECT_EQ(result.errorOutput, "") << result;
        return result.status == 0 ? parseJson(result.output) : JsonValue{JsonValue::Object{}};
    }
    static std::vector<std::string> quickly(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "update");
        arguments.insert(arguments.end(), {"--stop-polls", "3", "--activation-polls", "3", "--poll-interval-ms", "10",
                                           "--retry-delays-ms", "0,10"});
        return arguments;
    }
    std::vector<std::string> preparing() const {
        return quickly(
            {"prepare", "--version", newRelease.version, "--build", newRelease.build, "--channel", "stable"});
    }
    JsonValue prepare() const { return succeed(preparing()); }
    void start() const { succeed({"runtime", "bootstrap", "start"}); }
    bool isRunning() const { return at(succeed({"runtime", "bootstrap", "status"}), "running") == JsonValue{true}; }
    std::string runningVersion() const {
        const JsonValue status = succeed({"runtime", "bootstrap", "status"});
        return textAt(at(at(status, "daemonRuntime"), "identity"), "appVersion");
    }
    JsonValue recovered(int status = 0) const {
        const ProgramResult result = vesk(quickly({"recover"}));
        EXPECT_EQ(result.status, status) << result;
        EXPECT_EQ(result.errorOutput, "") << result;
        return parseJson(result.output);
    }
    bool hasRecord() const { return succeed({"update", "show"}) != parseJson("{}"); }

    SampleRuntime runtime;
    TemporaryFolder folder;
    const fs::path application = fs::path(folder.path()) / "Vesk.app";
    ProgramRun program{application / "Contents/MacOS/vesk"};
};

TEST_F(UpdateTests, TheAssistantComesUpOnTheNewRelease) {
    start();
    const JsonValue record = prepare();
    EXPECT_EQ(textAt(record, "phase"), "assistant_stopped");
    EXPECT_EQ(textAt(record, "source_version"), "1.4.0");
    EXPECT_FALSE(isRunning());
    EXPECT_EQ(succeed({"update", "show"}), record);
    EXPECT_EQ(textAt(succeed(quickly({"handoff", textAt(record, "update_id")})), "phase"), "sparkle_handoff");
    install(newRelease);
    const JsonValue outcome = recovered();
    EXPECT_EQ(textAt(outcome, "outcome"), "completed");
    EXPECT_EQ(textAt(at(outcome, "record"), "update_id"), textAt(record, "update_id"));
    EXPECT_EQ(runningVersion(), "1.5.0");
    EXPECT_FALSE(hasRecord());
    EXPECT_EQ(textAt(recovered(), "outcome"), "no_pending_update");
    EXPECT_EQ(
        std::ranges::count_if(
            runtime.calls(), [](const SampleCall& call) { return call.arguments.at(1) == "record-update-activation"; }),
        1);
}

TEST_F(UpdateTests, TheAssistantComesBackOnTheOldRelease) {
    start();
    prepare();
    EXPECT_EQ(textAt(recovered(), "outcome"), "restored_source");
    EXPECT_EQ(runningVersion(), "1.4.0");
    EXPECT_FALSE(hasRecord());
}

TEST_F(UpdateTests, AThirdReleaseWaits) {
    start();
    prepare();
    install(thirdRelease);
    const JsonValue outcome = recovered(3);
    EXPECT_EQ(textAt(outcome, "outcome"), "waiting_for_expected_bundle");
    EXPECT_EQ(textAt(at(outcome, "record"), "last_error_class"), "bundle_identity_mismatch");
    EXPECT_FALSE(isRunning());
    install(newRelease);
    EXPECT_EQ(textAt(recovered(), "outcome"), "completed");
    EXPECT_TRUE(isRunning());
}

TEST_F(UpdateTests, AnAssistantThatWasDownStaysDown) {
    succeed(
        quickly({"prepare", "--version", "1.5.0", "--build", "230", "--channel", "stable", "--desired", "stopped"}));
    install(newRelease);
    EXPECT_EQ(textAt(recovered(), "outcome"), "completed");
    EXPECT_FALSE(isRunning());
}

TEST_F(UpdateTests, ARecoveryThatFailsSaysWhy) {
    start();
    prepare();
    install(newRelease);
    program.environment["VESK_SAMPLE_MISBEHAVE"] = "stack-trace";
    program.environment["VESK_SAMPLE_MISBEHAVE_ON"] = "activate";
    const JsonValue outcome = recovered(3);
    EXPECT_EQ(textAt(outcome, "outcome"), "failed");
    EXPECT_EQ(textAt(outcome, "errorClass"), "runtime_operation_failed");
    EXPECT_EQ(at(at(outcome, "record"), "recovery_attempts"), JsonValue{std::int64_t{2}});
    program.environment.erase("VESK_SAMPLE_MISBEHAVE");
    EXPECT_EQ(textAt(recovered(), "outcome"), "completed");
    EXPECT_EQ(runningVersion(), "1.5.0");
}

TEST_F(UpdateTests, APreparationThatFailsLeavesTheAssistantAsItWas) {
    start();
    program.environment["VESK_SAMPLE_MISBEHAVE"] = "stack-trace";
    program.environment["VESK_SAMPLE_MISBEHAVE_ON"] = "stop";
    const ProgramResult result = vesk(preparing());
    EXPECT_EQ(result.status, 1) << result;
    EXPECT_TRUE(isRunning());
    EXPECT_EQ(textAt(succeed({"update", "show"}), "phase"), "activation_failed");
    EXPECT_EQ(vesk(quickly({"prepare", "--version", "1.5.0", "--build", "230", "--channel", "beta"})).errorOutput,
              "vesk: Vesk found invalid update recovery data.\n");
    EXPECT_EQ(vesk(quickly({"handoff", "0E984725-C51C-4BF4-9960-E1C80E27ABA0"})).errorOutput,
              "vesk: No matching update recovery record was found.\n");
}

TEST_F(UpdateTests, ARuntimeOfTheOldReleaseIsRepaired) {
    start();
    EXPECT_EQ(textAt(succeed(quickly({"reconcile"})), "outcome"), "current");
    install(newRelease);
    const JsonValue outcome = succeed(quickly({"reconcile"}));
    EXPECT_EQ(textAt(outcome, "outcome"), "repaired");
    EXPECT_TRUE(has(outcome, "status"));
    EXPECT_EQ(runningVersion(), "1.5.0");
    succeed({"runtime", "bootstrap", "uninstall-launch-agent"});
    EXPECT_EQ(textAt(succeed(quickly({"reconcile", "--desired", "running"})), "outcome"), "not_installed");
}

TEST_F(UpdateTests, ACorruptRecordIsLeftAlone) {
    const std::string path = (fs::path(folder.path()) / "record.json").string();
    std::ofstream(path) << "{";
    const ProgramResult result = vesk(quickly({"recover", "--file", path}));
    EXPECT_EQ(result.status, 3) << result;
    EXPECT_EQ(textAt(parseJson(result.output), "errorClass"), "invalid_activation_record");
    EXPECT_EQ(fs::file_size(path), 1u);
}

/// The recovery dies at any time; the next one brings the assistant up.
TEST_F(UpdateTests, AKillAtAnyTimeIsMadeGoodByTheNextLaunch) {
    for (int delayMs = 0; delayMs < 60; delayMs += 4) {
        SCOPED_TRACE(delayMs);
        install(oldRelease);
        succeed({"runtime", "bootstrap", "restart"});
        program.launcher = {"/usr/bin/timeout", "-s", "KILL",
                            "0.0" + std::string(delayMs < 10 ? "0" : "") + std::to_string(delayMs + 1)};
        vesk(preparing());
        install(newRelease);
        vesk(quickly({"recover"}));
        program.launcher.clear();
        const JsonValue outcome = recovered();
        EXPECT_TRUE(textAt(outcome, "outcome") == "completed" || textAt(outcome, "outcome") == "no_pending_update");
        if (textAt(outcome, "outcome") == "no_pending_update") succeed(quickly({"reconcile", "--desired", "running"}));
        EXPECT_FALSE(hasRecord());
        EXPECT_TRUE(isRunning());
        EXPECT_EQ(runningVersion(), "1.5.0");
    }
}

TEST_F(UpdateTests, WhatMeansNothingIsRefused) {
    const std::pair<std::vector<std::string>, const char*> cases[] = {
        {{"update"}, "A subcommand is required"},
        {{"update", "prepare", "--version", "1", "--build", "2"}, "--channel is required"},
        {{"update", "handoff", "x"}, "\"x\" is no UUID."},
        {{"update", "recover", "--expect", "x"}, "\"x\" is no UUID."},
        {{"update", "show", "--file", " "}, "PATH names nothing."},
        {{"update", "reconcile", "--desired", "maybe"}, "Could not convert: --desired = maybe"},
        {{"update", "recover", "--retry-delays-ms", "0,-1"}, "--retry-delays-ms"},
    };
    for (const auto& [arguments, wrong] : cases) {
        const ProgramResult result = vesk(arguments);
        EXPECT_EQ(result.status, 2) << result;
        EXPECT_THAT(result.errorOutput, HasSubstr(wrong)) << result;
    }
}

} // namespace
} // namespace vesk::test
