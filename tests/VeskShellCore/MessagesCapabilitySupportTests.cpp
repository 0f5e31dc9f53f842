#include "VeskShellCore/MessagesCapabilitySupport.hpp"

#include "tests/fakes/FakePlatform.hpp"
#include "tests/fakes/RunTask.hpp"

#include <gtest/gtest.h>

namespace vesk::test {
namespace {

using namespace VeskMessagesCapabilitySupport;
using enum CapabilityAuthorizationState;

const std::string messagesApp = "com.apple.MobileSMS";
const std::string hint = " The packaged app must be signed for app automation.";
const std::string tryAgain = "Open Messages and Vesk, then try the request again.";

struct ResultCase {
    AutomationResult result;
    CapabilityAuthorizationState state;
    std::string detail;
    std::optional<std::string> remediation;
};

const ResultCase resultCases[] = {
    {0, granted, "Vesk can use Messages when you ask.", std::nullopt},
    {-1744, notDetermined, "Messages access has not been requested yet.",
     "Ask Vesk to use Messages once to request access."},
    {-1743, denied, "Messages access is not granted for Vesk.",
     "Enable Vesk under System Settings > Privacy & Security > Automation > Messages."},
    {-600, unavailable, "Messages could not be reached.", tryAgain},
    {-50, unavailable, "Messages access could not be checked.", tryAgain},
};

class MessagesCapabilitySupport : public ::testing::Test {
protected:
    FakePlatform platform;
    FakeAutomation& automation = platform.fakeAutomation;

    MessagesCapabilitySupport() {
        automation.installed = automation.running = {messagesApp};
        automation.results = {{messagesApp, 0}};
    }
    CapabilityStatus passive() { return status(platform, platform.bundle); }
    CapabilityStatus active() { return runTask(requestStatus(platform, platform.bundle)); }
};

TEST_F(MessagesCapabilitySupport, EachResultHasItsStateAndTexts) {
    for (const bool isSigned : {true, false})
        for (const ResultCase& c : resultCases) {
            SCOPED_TRACE(c.result);
            platform.fakeBundleInformation.granted[platform.bundle.path] = {
                {"com.apple.security.automation.apple-events", {isSigned}}};
            automation.results[messagesApp] = c.result;
            const std::string detail = c.detail + (isSigned || c.result == 0 ? "" : hint);
            for (const CapabilityStatus& status : {passive(), active()})
                EXPECT_EQ(status, (CapabilityStatus{.kind = CapabilityKind::messages,
                                                    .state = c.state,
                                                    .detail = detail,
                                                    .remediation = c.remediation,
                                                    .sharedAuthorizationWith = {}}));
            EXPECT_EQ(hasAutomationEntitlement(platform, platform.bundle), isSigned);
        }
}

TEST_F(MessagesCapabilitySupport, MessagesThatAreNotInstalledAreNotAskedAbout) {
    automation.installed.clear();
    for (const CapabilityStatus& status : {passive(), active()}) {
        EXPECT_EQ(status.state, unavailable);
        EXPECT_EQ(status.detail, "Messages is not installed on this Mac.");
        EXPECT_EQ(status.remediation, std::nullopt);
    }
    EXPECT_EQ(automation.probes, 0);
    EXPECT_TRUE(automation.calls.empty());
}

TEST_F(MessagesCapabilitySupport, ThePassiveStatusPromptsNobodyAndStartsNothing) {
    automation.running.clear();
    for (const int result : {-1744, -600, 0}) {
        automation.results[messagesApp] = result;
        passive();
    }
    automation.results.clear();
    EXPECT_EQ(passive().detail, "Messages could not be reached." + hint);
    EXPECT_TRUE(automation.calls.empty());
}

TEST_F(MessagesCapabilitySupport, TheRequestAsksAndStartsButRunsNoScript) {
    automation.running.clear();
    automation.results[messagesApp] = -600;
    automation.onLaunch = [](FakeAutomation& self, const std::string& id) { self.results[id] = 0; };
    EXPECT_EQ(active().state, granted);
    EXPECT_EQ(automation.calls,
              (std::vector<std::string>{"ask com.apple.MobileSMS",
                                        "launch com.apple.MobileSMS by /usr/bin/open -b com.apple.MobileSMS",
                                        "ask com.apple.MobileSMS"}));
    EXPECT_EQ(platform.fakeSleeper.slept, std::vector{std::chrono::milliseconds(500)});
    EXPECT_TRUE(platform.fakeMessages.scripts.empty());
}

TEST_F(MessagesCapabilitySupport, ThePromptDecides) {
    automation.results[messagesApp] = -1744;
    EXPECT_EQ(passive().state, notDetermined);
    automation.resultAfterAnswer = 0;
    EXPECT_EQ(active().state, granted);
    EXPECT_EQ(passive().state, granted);
}

} // namespace
} // namespace vesk::test
