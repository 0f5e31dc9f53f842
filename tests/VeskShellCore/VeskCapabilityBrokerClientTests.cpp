#include "VeskShellCore/VeskCapabilityBrokerClient.hpp"

#include "VeskShellCore/VeskShellError.hpp"
#include "tests/VeskShellCore/LoggedLines.hpp"
#include "tests/fakes/FakePlatform.hpp"
#include "tests/fakes/RunTask.hpp"

#include <gtest/gtest.h>

namespace vesk {
namespace {

const std::string application = "/Applications/Vesk.app";
const std::string helper = application + "/Contents/Helpers/VeskCapabilityBroker";

class BrokerLocator : public testing::Test {
protected:
    void runBare() {
        platform.bundle = {.path = "/opt/vesk", .executablePath = "/opt/vesk/shell", .resourcesPath = std::nullopt};
    }
    void runMainProgram() { platform.bundle.executablePath = application + "/Contents/MacOS/Vesk"; }
    std::string resolve(std::optional<bool> prefer = std::nullopt) {
        return VeskCapabilityBrokerLocator::resolve(platform, prefer);
    }
    std::string failure(std::optional<bool> prefer = std::nullopt) {
        try {
            return "found " + resolve(prefer);
        } catch (const VeskShellError& error) {
            EXPECT_EQ(error.kind(), VeskShellError::Kind::capabilityBrokerNotFound);
            return error.description();
        }
    }

    test::FakePlatform platform;
    std::set<std::string>& executable = platform.fakeFileManager.executable;
    std::map<std::string, std::string>& variables = platform.fakeEnvironment.variables;
    const std::string notFound = "Unable to find the Vesk capability broker. Checked: ";
};

TEST_F(BrokerLocator, InAnApplicationTheHelperComesBeforeTheVariable) {
    executable = {helper, "/x/broker"};
    variables["VESK_CAPABILITY_BROKER"] = "/x/broker";
    EXPECT_EQ(resolve(), helper);
    variables["VESK_SHELL_ALLOW_ENV_OVERRIDE"] = "true";
    EXPECT_EQ(resolve(), helper);
    variables["VESK_SHELL_ALLOW_ENV_OVERRIDE"] = "1";
    EXPECT_EQ(resolve(), "/x/broker");
}

TEST_F(BrokerLocator, TheCallersPreferenceDecides) {
    executable = {helper, "/x/broker"};
    variables["VESK_CAPABILITY_BROKER"] = "/x/broker";
    EXPECT_EQ(resolve(false), "/x/broker");
    variables["VESK_SHELL_ALLOW_ENV_OVERRIDE"] = "1";
    EXPECT_EQ(resolve(true), helper);
}

TEST_F(BrokerLocator, TheBundledBrokerIsACandidateWhateverIsPreferred) {
    executable = {helper};
    variables["VESK_CAPABILITY_BROKER"] = "/x/broker";
    EXPECT_EQ(resolve(false), helper);
}

TEST_F(BrokerLocator, OutsideAnApplicationOnlyTheSiblingIsLeft) {
    runBare();
    EXPECT_EQ(failure(), notFound + "/opt/vesk/VeskCapabilityBroker");
    executable = {"/opt/vesk/VeskCapabilityBroker"};
    EXPECT_EQ(resolve(), "/opt/vesk/VeskCapabilityBroker");
}

TEST_F(BrokerLocator, AnExplicitPathIsTrimmedAndABlankOneIsNone) {
    runBare();
    variables["VESK_CAPABILITY_BROKER"] = " \n /x/broker\t";
    EXPECT_EQ(failure(), notFound + "/x/broker, /opt/vesk/VeskCapabilityBroker");
    variables["VESK_CAPABILITY_BROKER"] = " \n ";
    EXPECT_EQ(failure(), notFound + "/opt/vesk/VeskCapabilityBroker");
}

TEST_F(BrokerLocator, ARelativePathStartsAtTheWorkingDirectory) {
    runBare();
    variables["VESK_CAPABILITY_BROKER"] = "bin/broker";
    executable = {"/home/dana/work/bin/broker"};
    EXPECT_EQ(resolve(), "/home/dana/work/bin/broker");
}

/// The working directory was removed.
class GoneFolder : public test::FakeFileManager {
public:
    std::string currentDirectoryPath() override { throw PosixError(ENOENT, "."); }
};

class NowherePlatform : public test::FakePlatform {
public:
    FileManager& fileManager() override { return files; }

    GoneFolder files;
};

TEST_F(BrokerLocator, AnAbsolutePathNeedsNoWorkingDirectory) {
    NowherePlatform nowhere;
    nowhere.fakeEnvironment.variables["VESK_CAPABILITY_BROKER"] = "/x/broker";
    nowhere.files.executable = {"/x/broker"};
    EXPECT_EQ(VeskCapabilityBrokerLocator::resolve(nowhere), "/x/broker");
}

TEST_F(BrokerLocator, TheSiblingThatIsTheHelperIsNamedOnce) { EXPECT_EQ(failure(), notFound + helper); }

TEST_F(BrokerLocator, NamesAllCandidatesInTheOrderOfTheSearch) {
    runMainProgram();
    variables["VESK_CAPABILITY_BROKER"] = "/x/broker";
    const std::string sibling = application + "/Contents/MacOS/VeskCapabilityBroker";
    EXPECT_EQ(failure(), notFound + helper + ", /x/broker, " + sibling);
    EXPECT_EQ(failure(false), notFound + "/x/broker, " + helper + ", " + sibling);
}

TEST_F(BrokerLocator, WhatCannotBeRunIsPassedOver) {
    runBare();
    variables["VESK_CAPABILITY_BROKER"] = "/x/broker";
    platform.fakeFileManager.existing = {"/x/broker"};
    executable = {"/opt/vesk/VeskCapabilityBroker"};
    EXPECT_EQ(resolve(), "/opt/vesk/VeskCapabilityBroker");
}

TEST_F(BrokerLocator, WithoutAnExecutableThereMayBeNothingToName) {
    platform.bundle = {.path = "/opt/vesk", .executablePath = std::nullopt, .resourcesPath = std::nullopt};
    EXPECT_EQ(failure(), notFound);
}

TEST_F(BrokerLocator, AnExecutableInTheRootHasASibling) {
    platform.bundle = {.path = "/", .executablePath = "/shell", .resourcesPath = std::nullopt};
    EXPECT_EQ(failure(), notFound + "/VeskCapabilityBroker");
}

class BrokerClient : public testing::Test {
protected:
    std::vector<std::string> logLines() { return test::loggedLines(platform); }
    void answer(std::int32_t status, std::string output, std::string errors = "") {
        platform.fakeProgramLauncher.answers = {
            {.status = status, .output = std::move(output), .errors = errors, .whileRunning = [this] {
                 platform.fakeMonotonicClock.time += std::chrono::microseconds(12'999);
             }}};
    }
    const test::FakeProgramLauncher::Run& onlyRun() { return platform.fakeProgramLauncher.runs.at(0); }

    test::FakePlatform platform;
    const VeskCapabilityBrokerClient client{platform, "/opt/vesk/VeskCapabilityBroker"};
    const std::string report = R"({"brokerPath":"/b","capabilities":[]})";
};

TEST_F(BrokerClient, FindsTheBrokerByItself) {
    platform.fakeFileManager.executable = {helper};
    EXPECT_EQ(VeskCapabilityBrokerClient(platform).brokerPath(), helper);
    platform.fakeFileManager.executable.clear();
    EXPECT_THROW(VeskCapabilityBrokerClient{platform}, VeskShellError);
}

TEST_F(BrokerClient, AsksForTheStatus) {
    answer(0, report, "noise");
    EXPECT_EQ(test::runTask(client.status()).brokerPath, "/b");
    EXPECT_EQ(onlyRun().launch.executable, "/opt/vesk/VeskCapabilityBroker");
    EXPECT_EQ(onlyRun().launch.arguments, std::vector<std::string>{"status"});
    EXPECT_EQ(onlyRun().launch.workingDirectory, std::nullopt);
    EXPECT_TRUE(onlyRun().launch.variables.empty());
    EXPECT_FALSE(onlyRun().launch.takesInput);
    EXPECT_EQ(onlyRun().verbs, (std::vector<std::string>{"wait", "output", "errors"}));
    EXPECT_EQ(logLines(),
              (std::vector<std::string>{"capability-broker command=start args=status",
                                        "capability-broker command=ok label=VeskCapabilityBroker status durationMs=12 "
                                        "stdoutBytes=37 stderrBytes=5"}));
}

TEST_F(BrokerClient, RequestsACapability) {
    CapabilityRequestResponse response;
    response.requested = CapabilityKind::fullDiskAccess;
    response.report.brokerPath = "/b";
    answer(0, writeJson(toJson(response)));
    EXPECT_EQ(test::runTask(client.request(CapabilityKind::fullDiskAccess)), response);
    EXPECT_EQ(onlyRun().launch.arguments, (std::vector<std::string>{"request", "full_disk_access"}));
}

TEST_F(BrokerClient, AFailedBrokerTellsItsFirstLine) {
    answer(1, "{}", " no consent\nat main \n");
    try {
        test::runTask(client.status());
        FAIL();
    } catch (const VeskShellError& error) {
        EXPECT_EQ(error.kind(), VeskShellError::Kind::processFailed);
        EXPECT_EQ(error.description(), "no consent");
        EXPECT_EQ(error.command(), "/opt/vesk/VeskCapabilityBroker status");
        EXPECT_EQ(error.status(), 1);
        EXPECT_EQ(error.standardError(), "no consent\nat main");
    }
    EXPECT_EQ(logLines().at(1), "capability-broker command=process_failed args=status status=1 durationMs=12 "
                                "stdoutBytes=2 stderrBytes=21 stdoutPreview=[REDACTED] bytes=2] "
                                "stderrPreview=[REDACTED] bytes=21]");
}

TEST_F(BrokerClient, ErrorsThatAreNoUtf8AreNoText) {
    answer(1, "", "bad \xFF");
    try {
        test::runTask(client.status());
        FAIL();
    } catch (const VeskShellError& error) {
        EXPECT_EQ(error.standardError(), "");
        EXPECT_EQ(error.description(), "A packaged runtime command failed.");
    }
}

TEST_F(BrokerClient, AnAnswerThatCannotBeDecodedIsNoFailureOfTheProcess) {
    answer(0, "no JSON");
    std::string description;
    try {
        test::runTask(client.status());
        FAIL();
    } catch (const VeskShellError& error) {
        EXPECT_EQ(error.kind(), VeskShellError::Kind::invalidResponse);
        description = error.description();
    }
    const std::string prefix = "Invalid packaged runtime response: Unable to decode CLI response: ";
    ASSERT_TRUE(description.starts_with(prefix)) << description;
    EXPECT_EQ(logLines().at(1), "capability-broker command=decode_failed label=VeskCapabilityBroker status "
                                "durationMs=12 stdoutBytes=7 stderrBytes=0 stdoutPreview=[REDACTED] bytes=7] "
                                "stderrPreview=[REDACTED] error="
                                    + description.substr(prefix.size()));
}

TEST_F(BrokerClient, ALaunchThatFailsIsTheSystemsError) {
    platform.fakeProgramLauncher.launchFailure = ENOENT;
    EXPECT_THROW(test::runTask(client.status()), PosixError);
    EXPECT_EQ(logLines(), std::vector<std::string>{"capability-broker command=start args=status"});
}

} // namespace
} // namespace vesk
