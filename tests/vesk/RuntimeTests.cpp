#include "tests/support/SampleRuntime.hpp"
#include "tests/vesk/CompanionTest.hpp"

#include <filesystem>
#include <fstream>

namespace vesk::test {
namespace {

using ::testing::Contains;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

/// The companion over the sample runtime.
class RuntimeTests : public CompanionTest {
protected:
    RuntimeTests() {
        for (const auto& [name, value] : runtime.variables()) program.environment[name] = value;
        program.environment["VESK_RUNTIME_MANIFEST"] = SampleRuntime::manifestPath();
    }

    JsonValue bootstrap(std::vector<std::string> arguments, const std::string& input = "") {
        arguments.insert(arguments.begin(), {"runtime", "bootstrap"});
        program.input = input;
        return json(arguments);
    }
    JsonValue settings(std::vector<std::string> arguments, const std::string& input = "") {
        arguments.insert(arguments.begin(), {"runtime", "settings"});
        program.input = input;
        return json(arguments);
    }
    void misbehave(const std::string& how) { program.environment["VESK_SAMPLE_MISBEHAVE"] = how; }
    std::string failure(const std::vector<std::string>& arguments) {
        const ProgramResult result = vesk(arguments);
        EXPECT_EQ(result.status, 1) << result;
        EXPECT_EQ(result.output, "") << result;
        return result.errorOutput;
    }
    std::string log() const {
        std::ifstream file(runtime.home() + "/Library/Application Support/Vesk/logs/shell-debug.log");
        return {std::istreambuf_iterator<char>(file), {}};
    }
    static bool isTrue(const JsonValue& record, const std::string& key) { return at(record, key) == JsonValue{true}; }

    SampleRuntime runtime;
    const JsonValue nothing{JsonValue::Object{}};
};

TEST_F(RuntimeTests, LocatesTheRuntime) {
    const JsonValue found = json({"runtime", "locate"});
    EXPECT_EQ(textAt(found, "source"), "env");
    EXPECT_EQ(textAt(found, "sourceLabel"), "Explicit runtime manifest");
    EXPECT_EQ(textAt(found, "manifestPath"), SampleRuntime::manifestPath());
    EXPECT_EQ(textAt(found, "runtimeRoot"), SampleRuntime::root());
    EXPECT_EQ(textAt(found, "daemonPath"), SampleRuntime::daemonPath());
    EXPECT_EQ(textAt(found, "agentPath"), SampleRuntime::root() + "/bin/vesk-agent");
    EXPECT_EQ(textAt(found, "launcherPath"), SampleRuntime::root() + "/bin/vesk-launcher");
    EXPECT_EQ(std::get<JsonValue::Object>(found.value).size(), 7u);
}

TEST_F(RuntimeTests, TellsWhereItLookedForARuntime) {
    program.environment.erase("VESK_RUNTIME_MANIFEST");
    const std::string text = failure({"runtime", "locate"});
    EXPECT_THAT(text, StartsWith("vesk: Unable to find a packaged Vesk runtime manifest. Checked: "));
    EXPECT_THAT(text, HasSubstr(program.folder().string() + "/.build/vesk-runtime/manifest.json, "));
    EXPECT_THAT(text, EndsWith(", /.build/vesk-runtime/manifest.json\n"));
}

TEST_F(RuntimeTests, AManifestThatIsNoGoodEndsTheSearch) {
    const std::string path = (program.folder() / "manifest.json").string();
    std::ofstream(path) << R"({"runtime_version":"1","z":1,"a":2})";
    program.environment["VESK_RUNTIME_MANIFEST"] = path;
    expectFailure({"runtime", "locate"}, "Invalid packaged runtime manifest: unsupported fields: a, z");
}

TEST_F(RuntimeTests, RunsTheServiceAndTellsWhetherItLives) {
    EXPECT_FALSE(isTrue(bootstrap({"status"}), "running"));
    bootstrap({"install-launch-agent"});
    EXPECT_TRUE(isTrue(bootstrap({"start"}), "running"));
    EXPECT_TRUE(isTrue(bootstrap({"status"}), "running"));
    EXPECT_EQ(textAt(json({"liveness"}), "state"), "running");
    EXPECT_TRUE(isTrue(bootstrap({"restart"}), "running"));
    EXPECT_FALSE(isTrue(bootstrap({"stop"}), "running"));
    EXPECT_EQ(textAt(json({"liveness"}), "state"), "stopped");
    EXPECT_TRUE(isTrue(bootstrap({"activate", "--running"}), "running"));
    EXPECT_FALSE(isTrue(bootstrap({"activate", "--stopped"}), "running"));
    bootstrap({"uninstall-launch-agent"});
    EXPECT_FALSE(isTrue(bootstrap({"status"}), "installed"));
}

TEST_F(RuntimeTests, ATextLosesOneLineEnd) {
    EXPECT_EQ(textAt(at(bootstrap({"memory-create", "--stdin"}, "likes tea\n"), "memory"), "text"), "likes tea");
    const JsonValue report = bootstrap({"memories"});
    const std::string number = std::to_string(std::get<std::int64_t>(at(listAt(report, "memories").at(0), "id").value));
    const JsonValue changed = bootstrap({"memory-update", number, "--stdin"}, "likes\ntea\n\r\n");
    EXPECT_EQ(textAt(at(changed, "memory"), "text"), "likes\ntea\n");
    EXPECT_EQ(runtime.calls().back().arguments,
              (std::vector<std::string>{"bootstrap", "memory-update", number, "--stdin"}));
}

TEST_F(RuntimeTests, ATextThatIsNoTextIsRefused) {
    program.input = "\xff";
    EXPECT_THAT(failure({"runtime", "bootstrap", "memory-create", "--stdin"}), HasSubstr("standard input"));
    EXPECT_TRUE(runtime.calls().empty());
}

TEST_F(RuntimeTests, ConnectsByAddressAndByKey) {
    const std::string id = textAt(listAt(bootstrap({"connectors"}), "connectors").at(0), "id");
    EXPECT_EQ(textAt(at(bootstrap({"connector-detail", id}), "connector"), "id"), id);
    EXPECT_TRUE(isTrue(at(bootstrap({"connector-install", id, "--force"}), "connector"), "installed"));
    bootstrap({"connector-connect", id, "--email", "dana@example.org"});
    bootstrap({"connector-connect", id, "--stdin"}, "key-4711\n");
    EXPECT_EQ(parseJson(runtime.calls().back().input.value()), parseJson(R"({"api_key":"key-4711"})"));
    bootstrap({"connector-disconnect", id, "--email", "  "});
    EXPECT_EQ(runtime.calls().back().arguments, (std::vector<std::string>{"bootstrap", "connector-disconnect", id}));
}

TEST_F(RuntimeTests, SettingsAreMergedAndPrinted) {
    EXPECT_EQ(settings({"merge", "--stdin"}, R"({"schema_version":1,"profile":{"city":"Bern"}})"), nothing);
    EXPECT_EQ(textAt(at(settings({"print"}), "profile"), "city"), "Bern");
    program.input = R"({"profile":{}})";
    EXPECT_THAT(failure({"runtime", "settings", "merge", "--stdin"}), HasSubstr("schema_version is missing"));
}

TEST_F(RuntimeTests, SecretsGoInByStandardInputOnlyAndShowNowhere) {
    const std::string secret = "planted-4f1b";
    EXPECT_EQ(settings({"set-secrets", "--stdin"}, R"({"OPENAI_API_KEY":")" + secret + R"("})"), nothing);
    EXPECT_EQ(parseJson(runtime.calls().back().input.value()), parseJson(R"({"OPENAI_API_KEY":"planted-4f1b"})"));
    bootstrap({"telegram-token-validate", "--stdin"}, secret);
    EXPECT_EQ(settings({"delete-secret", "OPENAI_API_KEY"}), nothing);
    for (const SampleCall& call : runtime.calls()) EXPECT_THAT(call.arguments, Not(Contains(HasSubstr(secret))));
    EXPECT_THAT(log(), HasSubstr("args=settings set-secrets --stdin"));
    EXPECT_THAT(log(), Not(HasSubstr(secret)));
    misbehave("stack-trace");
    program.input = R"({"OPENAI_API_KEY":")" + secret + R"("})";
    EXPECT_THAT(failure({"runtime", "settings", "set-secrets", "--stdin"}), Not(HasSubstr(secret)));
    EXPECT_THAT(log(), Not(HasSubstr(secret)));
}

TEST_F(RuntimeTests, SetsTheRuntimeUp) {
    const JsonValue response =
        bootstrap({"init", "--stdin"}, R"({"settings":{"schema_version":1},"install_core_tools":true})");
    EXPECT_TRUE(isTrue(response, "ok"));
    EXPECT_EQ(bootstrap({"install-core-tools"}), nothing);
    EXPECT_EQ(bootstrap({"prepare-runtime"}), nothing);
    EXPECT_TRUE(isTrue(bootstrap({"complete-onboarding"}), "onboardingCompleted"));
    EXPECT_TRUE(has(bootstrap({"doctor"}), "runtimeMode"));
    EXPECT_TRUE(has(bootstrap({"telegram-binding-status"}), "ownerBound"));
}

TEST_F(RuntimeTests, ReportsWhatAnUpdateCameTo) {
    const std::string record = R"({"schema_version":1,"update_id":"0E984725-C51C-4BF4-9960-E1C80E27ABA0",
        "source_version":"1.4.0","source_build":"212","target_version":"1.5.0","target_build":"230","channel":"stable",
        "assistant_was_installed":true,"assistant_was_running":true,"phase":"recovering_after_relaunch",
        "created_at":"2026-04-26T14:03:22Z","updated_at":"2026-04-26T14:05:00Z","recovery_attempts":1})";
    EXPECT_EQ(bootstrap({"record-update-activation", "--stdin"}, record), nothing);
    EXPECT_EQ(parseJson(runtime.calls().back().input.value()),
              parseJson(R"({"update_id":"0e984725-c51c-4bf4-9960-e1c80e27aba0","source_version":"1.4.0",
                  "source_build":"212","target_version":"1.5.0","target_build":"230","channel":"stable",
                  "assistant_was_running":true,"recovery_attempts":1})"));
    program.input = "{}";
    EXPECT_THAT(failure({"runtime", "bootstrap", "record-update-activation", "--stdin"}),
                HasSubstr("Vesk found invalid update recovery data."));
}

TEST_F(RuntimeTests, TheToolSeesItsFolderAndItsManifest) {
    bootstrap({"doctor"});
    EXPECT_EQ(runtime.calls().at(0).workingDirectory, SampleRuntime::root());
    EXPECT_EQ(runtime.calls().at(0).environment.at("VESK_RUNTIME_MANIFEST"), SampleRuntime::manifestPath());
    EXPECT_FALSE(runtime.calls().at(0).environment.contains("VESK_RELEASE_CHANNEL"));
}

TEST_F(RuntimeTests, TellsInPlainWordsHowARuntimeFailed) {
    const std::string invalid = "vesk: Invalid packaged runtime response: Unable to decode CLI response: ";
    const std::pair<const char*, std::string> cases[] = {
        {"wrong-json", invalid},
        {"silence", invalid},
        {"missing-field", invalid},
        {"unknown-command",
         "vesk: Your local packaged runtime is stale. Relaunch the shell through `pnpm shell:run` so "
         "it rebuilds the packaged runtime first.\n"},
        {"signal", "vesk: A packaged runtime command failed.\n"},
    };
    for (const auto& [how, expected] : cases) {
        misbehave(how);
        const std::string text = failure({"runtime", "bootstrap", "doctor"});
        EXPECT_THAT(text, StartsWith(expected)) << how;
        EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1) << how;
    }
    misbehave("stack-trace");
    EXPECT_THAT(failure({"runtime", "bootstrap", "doctor"}), Not(HasSubstr("    at ")));
    misbehave("stderr-noise");
    EXPECT_EQ(vesk({"runtime", "bootstrap", "doctor"}).status, 0);
}

TEST_F(RuntimeTests, AWorkingDirectoryThatIsGoneHidesNoRuntime) {
    ProgramRun shell("/bin/sh");
    shell.environment = program.environment;
    const std::string script =
        "folder=$(mktemp -d) && cd \"$folder\" && rmdir \"$folder\" && exec \"$0\" runtime locate";
    const ProgramResult found = shell.run({"-c", script, companionProgram});
    EXPECT_EQ(found.status, 0) << found;
    shell.environment["VESK_RUNTIME_MANIFEST"] = "";
    EXPECT_EQ(shell.run({"-c", script, companionProgram}).errorOutput,
              "vesk: Unable to find a packaged Vesk runtime manifest. Checked: /.build/vesk-runtime/manifest.json\n");
}

class BrokerTests : public CompanionTest {};

TEST_F(BrokerTests, AsksTheBrokerBesideIt) {
    const JsonValue report = json({"broker", "status"});
    EXPECT_EQ(textAt(report, "brokerPath"), VESK_BINARY_DIR "/bin/VeskCapabilityBroker");
    EXPECT_EQ(parseJson(ProgramRun(VESK_BINARY_DIR "/bin/VeskCapabilityBroker").run({"status"}).output).value.index(),
              report.value.index());
}

TEST_F(BrokerTests, RequestsACapability) {
    EXPECT_EQ(vesk({"consent", "grant", "calendar", "--yes"}).status, 0);
    EXPECT_EQ(textAt(json({"broker", "request", "calendar"}), "requested"), "calendar");
}

TEST_F(BrokerTests, WhatAFailedProgramSaysCannotMoveTheCursor) {
    const std::filesystem::path script = program.folder() / "broker";
    std::ofstream(script) << "#!/bin/sh\nprintf 'red \\033[31mtext\\177' >&2\nexit 1\n";
    std::filesystem::permissions(script, std::filesystem::perms::owner_all);
    program.environment["VESK_CAPABILITY_BROKER"] = script.string();
    expectFailure({"broker", "status"}, "red  [31mtext ");
}

TEST_F(BrokerTests, AnotherBrokerMayBeNamed) {
    program.environment["VESK_CAPABILITY_BROKER"] = "/bin/false";
    expectFailure({"broker", "status"}, "A packaged runtime command failed.");
    program.environment["VESK_CAPABILITY_BROKER"] = "/bin/true";
    EXPECT_THAT(vesk({"broker", "status"}).errorOutput,
                StartsWith("vesk: Invalid packaged runtime response: Unable to decode CLI response: "));
}

} // namespace
} // namespace vesk::test
