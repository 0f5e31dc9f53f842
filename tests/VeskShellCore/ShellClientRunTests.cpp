#include "VeskShellCore/ShellClientRun.hpp"

#include "VeskShellCore/VeskShellError.hpp"
#include "tests/VeskShellCore/LoggedLines.hpp"
#include "tests/fakes/FakePlatform.hpp"
#include "tests/fakes/RunTask.hpp"

#include <gtest/gtest.h>
#include <limits>

namespace vesk {

struct Pong {
    std::string word;
    bool operator==(const Pong&) const = default;
};
template <> inline constexpr auto recordTable<Pong> = recordFields(required("word", &Pong::word));

namespace {

using Variables = std::map<std::string, std::string>;

class ShellClientProcess : public testing::Test {
protected:
    CommandRun prepared(const std::optional<JsonValue>& payload = std::nullopt) {
        return shellClientRun(platform, runtime, "/r/bin/vesk-daemon", {"bootstrap", "ping"}, payload);
    }
    Pong ping(const std::optional<JsonValue>& payload = std::nullopt) {
        return test::runTask(runJson<Pong>(platform, prepared(payload)));
    }
    std::string failure(VeskShellError::Kind kind) {
        try {
            ping();
        } catch (const VeskShellError& error) {
            EXPECT_EQ(error.kind(), kind);
            return error.description();
        }
        return "no failure";
    }
    void tell(const std::string& key, JsonValue value) {
        platform.fakeBundleInformation.dictionaries[platform.bundle.path][key] = std::move(value);
    }
    void answer(std::int32_t status, std::string output, std::string errors = "") {
        platform.fakeProgramLauncher.answers = {
            {.status = status, .output = std::move(output), .errors = std::move(errors), .whileRunning = [this] {
                 platform.fakeMonotonicClock.time += std::chrono::microseconds(7'999);
             }}};
    }
    const test::FakeProgramLauncher::Run& onlyRun() { return platform.fakeProgramLauncher.runs.at(0); }

    test::FakePlatform platform;
    Variables& variables = platform.fakeEnvironment.variables;
    const VeskRuntimeDescriptor runtime{.manifestPath = "/r/manifest.json",
                                        .runtimeRoot = "/r",
                                        .daemonPath = "/r/bin/vesk-daemon",
                                        .agentPath = {},
                                        .bootstrapCLIPath = {},
                                        .settingsCLIPath = {},
                                        .launcherPath = {}};
};

TEST_F(ShellClientProcess, RunsInTheFolderOfTheRuntime) {
    answer(0, R"({"word":"pong"})");
    EXPECT_EQ(ping(), Pong{"pong"});
    EXPECT_EQ(onlyRun().launch.executable, "/r/bin/vesk-daemon");
    EXPECT_EQ(onlyRun().launch.arguments, (std::vector<std::string>{"bootstrap", "ping"}));
    EXPECT_EQ(onlyRun().launch.workingDirectory, "/r");
}

TEST_F(ShellClientProcess, TheManifestReplacesAnInheritedOne) {
    variables["VESK_RUNTIME_MANIFEST"] = "/elsewhere/manifest.json";
    EXPECT_EQ(prepared().launch.variables, (Variables{{"VESK_RUNTIME_MANIFEST", "/r/manifest.json"}}));
}

TEST_F(ShellClientProcess, TheBundleTellsWhichReleaseRuns) {
    tell("CFBundleShortVersionString", {std::string(" 1.4.2\n")});
    tell("CFBundleVersion", {std::string("204")});
    tell("VeskReleaseChannel", {std::string("beta")});
    EXPECT_EQ(prepared().launch.variables, (Variables{{"VESK_APP_BUILD_VERSION", "204"},
                                                      {"VESK_APP_VERSION", "1.4.2"},
                                                      {"VESK_RELEASE_CHANNEL", "beta"},
                                                      {"VESK_RUNTIME_MANIFEST", "/r/manifest.json"}}));
}

TEST_F(ShellClientProcess, WhatTheBundleDoesNotTellStaysAsItWasInherited) {
    variables["VESK_RELEASE_CHANNEL"] = "inherited";
    tell("CFBundleShortVersionString", {std::string(" \n ")});
    tell("CFBundleVersion", {std::int64_t{204}});
    EXPECT_EQ(prepared().launch.variables, (Variables{{"VESK_RUNTIME_MANIFEST", "/r/manifest.json"}}));
}

TEST_F(ShellClientProcess, WithoutAPayloadTheInputIsInherited) {
    answer(0, R"({"word":"pong"})");
    ping();
    EXPECT_FALSE(onlyRun().launch.takesInput);
    EXPECT_EQ(onlyRun().input, std::nullopt);
    EXPECT_EQ(onlyRun().verbs, (std::vector<std::string>{"wait", "output", "errors"}));
}

TEST_F(ShellClientProcess, APayloadIsWrittenWholeBeforeTheWait) {
    answer(0, R"({"word":"pong"})");
    ping(JsonValue{JsonValue::Object{{"b", {std::string("x/y")}}, {"a", {true}}}});
    EXPECT_TRUE(onlyRun().launch.takesInput);
    EXPECT_EQ(onlyRun().input, "{\n  \"a\" : true,\n  \"b\" : \"x\\/y\"\n}");
    EXPECT_EQ(onlyRun().verbs, (std::vector<std::string>{"write", "wait", "output", "errors"}));
}

TEST_F(ShellClientProcess, AnEmptyObjectIsAPayload) {
    answer(0, R"({"word":"pong"})");
    ping(JsonValue{JsonValue::Object{}});
    EXPECT_EQ(onlyRun().input, "{\n\n}");
}

TEST_F(ShellClientProcess, APayloadThatCannotBeWrittenFailsBeforeAnythingElse) {
    EXPECT_THROW(ping(JsonValue{std::numeric_limits<double>::infinity()}), ErrorRecord);
    EXPECT_TRUE(platform.fakeProgramLauncher.runs.empty());
    EXPECT_TRUE(test::loggedLines(platform).empty());
}

TEST_F(ShellClientProcess, TellsTheLogOfARunButNothingOfItsOutput) {
    variables["VESK_AUTH_BASE_URL"] = "https://auth.example";
    answer(0, R"({"word":"pong"})", "note");
    ping(JsonValue{std::string("the secret")});
    EXPECT_EQ(test::loggedLines(platform),
              (std::vector<std::string>{"shell-client command=start script=/r/bin/vesk-daemon args=bootstrap ping "
                                        "authBaseURL=https://auth.example",
                                        "shell-client command=ok label=vesk-daemon bootstrap ping durationMs=7 "
                                        "stdoutBytes=15 stderrBytes=4"}));
}

TEST_F(ShellClientProcess, AnEmptyAddressIsNotAnUnsetOne) {
    const std::string start = " authBaseURL=";
    EXPECT_EQ(prepared().surroundings, start + "(unset)");
    variables["VESK_AUTH_BASE_URL"] = "";
    EXPECT_EQ(prepared().surroundings, start);
}

TEST_F(ShellClientProcess, TheTimeOfTheLaunchDoesNotCount) {
    platform.fakeProgramLauncher.whileLaunching = [this] {
        platform.fakeMonotonicClock.time += std::chrono::seconds(9);
    };
    answer(0, R"({"word":"pong"})");
    ping();
    EXPECT_NE(test::loggedLines(platform).at(1).find(" durationMs=7 "), std::string::npos);
}

TEST_F(ShellClientProcess, SilenceIsADecodingFailure) {
    answer(0, "");
    const std::string description = failure(VeskShellError::Kind::invalidResponse);
    EXPECT_TRUE(description.starts_with("Invalid packaged runtime response: Unable to decode CLI response: "))
        << description;
}

TEST_F(ShellClientProcess, ADecodingFailureIsLoggedWithItsReason) {
    answer(0, R"({"word":7})", "x");
    EXPECT_EQ(
        failure(VeskShellError::Kind::invalidResponse),
        "Invalid packaged runtime response: Unable to decode CLI response: The data cannot be read: word is not a "
        "string.");
    EXPECT_EQ(
        test::loggedLines(platform).at(1),
        "shell-client command=decode_failed label=vesk-daemon bootstrap ping durationMs=7 stdoutBytes=10 "
        "stderrBytes=1 stdoutPreview=[REDACTED] bytes=10] stderrPreview=[REDACTED] bytes=1] error=The data cannot "
        "be read: word is not a string.");
}

TEST_F(ShellClientProcess, AFailedProcessIsLoggedAndToldInItsOwnWords) {
    answer(3, "{}", "at a\nfatal error: Error: no disk \nat b\n");
    try {
        ping();
        FAIL();
    } catch (const VeskShellError& error) {
        EXPECT_EQ(error.kind(), VeskShellError::Kind::processFailed);
        EXPECT_EQ(error.description(), "no disk");
        EXPECT_EQ(error.command(), "/r/bin/vesk-daemon bootstrap ping");
        EXPECT_EQ(error.status(), 3);
        EXPECT_EQ(error.standardError(), "at a\nfatal error: Error: no disk \nat b");
    }
    EXPECT_EQ(test::loggedLines(platform).at(1),
              "shell-client command=process_failed script=/r/bin/vesk-daemon args=bootstrap ping status=3 durationMs=7 "
              "stdoutBytes=2 stderrBytes=39 stdoutPreview=[REDACTED] bytes=2] stderrPreview=[REDACTED] bytes=39]");
}

TEST_F(ShellClientProcess, AFailureWithoutWordsHasTheGeneralOnes) {
    answer(1, "");
    EXPECT_EQ(failure(VeskShellError::Kind::processFailed), "A packaged runtime command failed.");
}

TEST_F(ShellClientProcess, ErrorsOfARunThatSucceedsAreNotLookedAt) {
    answer(0, R"({"word":"pong"})", "fatal error");
    EXPECT_EQ(ping(), Pong{"pong"});
}

TEST_F(ShellClientProcess, ALaunchThatFailsIsTheSystemsErrorAfterTheLineOfTheStart) {
    platform.fakeProgramLauncher.launchFailure = EACCES;
    EXPECT_THROW(ping(), PosixError);
    EXPECT_EQ(test::loggedLines(platform).size(), 1u);
}

TEST_F(ShellClientProcess, AStalledProgramIsToldAsItIs) {
    platform.fakeProgramLauncher.answers.front().whileRunning = [] { throw ProgramStalled("It was stopped."); };
    EXPECT_THROW(ping(), ProgramStalled);
}

} // namespace
} // namespace vesk
