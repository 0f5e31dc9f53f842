#include "VeskShellCore/MailCapabilitySupport.hpp"

#include "tests/fakes/FakePlatform.hpp"
#include "tests/fakes/RunTask.hpp"

#include <gtest/gtest.h>

namespace vesk::test {
namespace {

using namespace VeskMailCapabilitySupport;
using enum CapabilityAuthorizationState;

const std::string mailApp = "com.apple.mail";
const std::string hint = " The packaged app must be signed with the Mail Automation entitlement.";
const std::string grantedText = "Vesk.app can read bounded message lists from Mail when you ask.";
const std::string tryAgain = "Open Mail and Vesk, then try the Mail request again.";
const std::string enable = "Enable Vesk under System Settings > Privacy & Security > Automation > Mail.";

struct Expected {
    CapabilityAuthorizationState state;
    /// What the hint follows, and what follows the hint.
    std::string detail, rest;
    std::optional<std::string> remediation;
    bool hinted = true;
};

class MailCapabilitySupport : public ::testing::Test {
protected:
    FakePlatform platform;
    FakeAutomation& automation = platform.fakeAutomation;

    MailCapabilitySupport() {
        automation.installed = automation.running = {mailApp};
        automation.results = {{mailApp, 0}};
    }
    void sign(bool signedSo) {
        platform.fakeBundleInformation.granted[platform.bundle.path] = {
            {"com.apple.security.automation.apple-events", {signedSo}}};
    }
    CapabilityStatus passive() { return status(platform, platform.bundle); }
    CapabilityStatus active() { return runTask(requestStatus(platform, platform.bundle)); }

    static void expect(const CapabilityStatus& status, const Expected& expected, bool isSigned) {
        EXPECT_EQ(status.kind, CapabilityKind::mail);
        EXPECT_EQ(status.state, expected.state);
        EXPECT_EQ(status.detail, expected.detail + (expected.hinted && !isSigned ? hint : "") + expected.rest);
        EXPECT_EQ(status.remediation, expected.remediation);
        EXPECT_EQ(status.sharedAuthorizationWith, std::nullopt);
    }
};

const std::pair<AutomationResult, Expected> resultCases[] = {
    {0, {granted, grantedText, "", std::nullopt, false}},
    {-1744,
     {notDetermined, "Mail Automation access is verified only when you ask Vesk to check Mail.", "",
      "Ask Vesk to check Mail once to request or verify Mail access."}},
    {-1743, {denied, "Mail Automation access is not granted for Vesk.app.", "", enable}},
    {-600, {unavailable, "Mail Automation target could not be resolved.", "", tryAgain}},
    {-50, {unavailable, "Mail Automation permission check failed with OSStatus -50.", "", tryAgain}},
    {7, {unavailable, "Mail Automation permission check failed with OSStatus 7.", "", tryAgain}},
};

TEST_F(MailCapabilitySupport, EachResultHasItsStateAndTexts) {
    for (const bool isSigned : {true, false})
        for (const auto& [result, expected] : resultCases) {
            SCOPED_TRACE(result);
            sign(isSigned);
            automation.results[mailApp] = result;
            expect(passive(), expected, isSigned);
            expect(active(), expected, isSigned);
        }
}

TEST_F(MailCapabilitySupport, MailThatIsNotInstalledIsNotAskedAbout) {
    automation.installed.clear();
    for (const CapabilityStatus& status : {passive(), active()})
        expect(status, {unavailable, "Mail.app is not installed on this Mac.", "", std::nullopt, false}, false);
    EXPECT_EQ(automation.probes, 0);
    EXPECT_TRUE(automation.calls.empty());
}

TEST_F(MailCapabilitySupport, ThePassiveStatusPromptsNobodyAndStartsNothing) {
    automation.running.clear();
    for (const int result : {-1744, -600, 0}) {
        automation.results[mailApp] = result;
        passive();
    }
    automation.results.clear();
    EXPECT_EQ(passive().detail, "Mail Automation target could not be resolved." + hint);
    EXPECT_TRUE(automation.calls.empty());
    EXPECT_TRUE(platform.fakeMail.scripts.empty());
    EXPECT_TRUE(platform.fakeSleeper.slept.empty());
}

TEST_F(MailCapabilitySupport, GrantedIsWhatTheProbeHasShown) {
    EXPECT_EQ(active().state, granted);
    ASSERT_EQ(platform.fakeMail.scripts.size(), 1U);
    EXPECT_EQ(platform.fakeMail.scripts[0].question, MailQuestion(MailProbeQuestion{}));
    for (const int result : {-1744, -1743, -600, -50}) {
        automation.results[mailApp] = result;
        active();
    }
    EXPECT_EQ(platform.fakeMail.scripts.size(), 1U) << "no probe without permission";
}

TEST_F(MailCapabilitySupport, MailThatDoesNotRunIsStarted) {
    automation.running.clear();
    automation.results[mailApp] = -600;
    automation.onLaunch = [](FakeAutomation& self, const std::string& id) { self.results[id] = 0; };
    EXPECT_EQ(active().state, granted);
    EXPECT_EQ(automation.calls, (std::vector<std::string>{"ask com.apple.mail",
                                                          "launch com.apple.mail by /usr/bin/open -b com.apple.mail",
                                                          "ask com.apple.mail"}));
}

TEST_F(MailCapabilitySupport, TheProbesFailureIsReadByItsWords) {
    const Expected late{notDetermined, "Mail Automation permission request did not finish yet.", "",
                        "Keep Vesk.app open and respond to the macOS Automation prompt; then ask Vesk to check Mail "
                        "again."};
    const auto refused = [](const std::string& text) {
        return Expected{denied, "Mail Automation access is not granted for Vesk.app.", " " + text, enable};
    };
    const auto failed = [](const std::string& text) {
        return Expected{unavailable, "Mail Automation probe failed.", " " + text, tryAgain};
    };
    const std::string authorized = "Not authorized to send Apple events to Mail.";
    const std::pair<std::string, Expected> cases[] = {
        {"AppleEvent timed out.", late},
        {" TIMEOUT ", late},
        {"Not permitted, timed out", late},
        {authorized, refused(authorized)},
        {"  " + authorized + "\n", refused(authorized)},
        {"NOT AUTHORISED", refused("NOT AUTHORISED")},
        {"It is not permitted.", refused("It is not permitted.")},
        {"not allowed", refused("not allowed")},
        {"Access has not been granted", refused("Access has not been granted")},
        {"Mail got an error.", failed("Mail got an error.")},
        {"", failed("Apple Mail Automation failed.")},
    };
    for (const bool isSigned : {true, false})
        for (const auto& [message, expected] : cases) {
            SCOPED_TRACE(message);
            sign(isSigned);
            platform.fakeMail.outcome = MailScriptFailed{message};
            expect(active(), expected, isSigned);
        }
    platform.fakeMail.outcome = MailScriptNotMade{};
    expect(active(), failed("Unable to create Apple Mail script."), false);
}

TEST_F(MailCapabilitySupport, TheEntitlementIsTheBooleanTrue) {
    EXPECT_FALSE(hasAutomationEntitlement(platform, platform.bundle));
    sign(true);
    EXPECT_TRUE(hasAutomationEntitlement(platform, platform.bundle));
    sign(false);
    EXPECT_FALSE(hasAutomationEntitlement(platform, platform.bundle));
}

} // namespace
} // namespace vesk::test
