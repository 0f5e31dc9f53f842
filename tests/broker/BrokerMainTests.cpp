#include "VeskCapabilityBroker/BrokerCommand.hpp"
#include "VeskCapabilityBroker/BrokerMain.hpp"
#include "tests/fakes/FakeByteOutput.hpp"
#include "tests/fakes/FakePlatform.hpp"

#include <asio/co_spawn.hpp>
#include <cerrno>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdexcept>

namespace vesk {
namespace {

using testing::HasSubstr;

class BrokerMain : public testing::Test {
protected:
    test::FakePlatform platform;
    test::FakeByteOutput output, errorOutput;

    int run(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "VeskCapabilityBroker");
        return runBroker(arguments, platform, output, errorOutput);
    }
    void expectFailure(const std::string& rendering) {
        EXPECT_TRUE(output.writes.empty());
        EXPECT_EQ(errorOutput.text(), "[capability-broker] fatal error " + rendering + "\n");
    }
};

std::string brokerError(int code, const std::string& text) {
    return "Error Domain=VeskCapabilityBroker Code=" + std::to_string(code) + " \"" + text
           + "\" UserInfo={NSLocalizedDescription=" + text + "}";
}

TEST_F(BrokerMain, SuccessWritesTheDocumentThenOneLineBreak) {
    EXPECT_EQ(run({"status"}), 0);
    ASSERT_EQ(output.writes.size(), 2U);
    EXPECT_EQ(output.writes[0].front(), '{');
    EXPECT_EQ(output.writes[0].back(), '}');
    EXPECT_EQ(output.writes[1], "\n");
    EXPECT_TRUE(errorOutput.writes.empty());
}

TEST_F(BrokerMain, StatusPrintsTheWholeReport) {
    platform.bundle = {.path = "/opt/bin", .executablePath = "/opt/bin/broker", .resourcesPath = {}};
    platform.fakeConsent.screenCapture = platform.fakeConsent.processTrusted = true;
    for (auto& [service, status] : platform.fakeConsent.statuses) status = 3;
    EXPECT_EQ(run({"status"}), 0);
    EXPECT_EQ(output.text(), R"({
  "brokerPath" : "\/opt\/bin\/broker",
  "capabilities" : [
    {
      "detail" : "ScreenCaptureKit access is available to the native broker.",
      "kind" : "screen_recording",
      "state" : "granted"
    },
    {
      "detail" : "System audio capture can be requested through the same ScreenCaptureKit authorization.",
      "kind" : "system_audio",
      "sharedAuthorizationWith" : "screen_recording",
      "state" : "granted"
    },
    {
      "detail" : "Microphone access is available to the native broker.",
      "kind" : "microphone",
      "state" : "granted"
    },
    {
      "detail" : "Accessibility control is available to the native broker.",
      "kind" : "accessibility",
      "state" : "granted"
    },
    {
      "detail" : "Calendar access is available to the native broker.",
      "kind" : "calendar",
      "state" : "granted"
    },
    {
      "detail" : "Reminders access is available to the native broker.",
      "kind" : "reminders",
      "state" : "granted"
    },
    {
      "detail" : "Contacts access is available to the native broker.",
      "kind" : "contacts",
      "state" : "granted"
    },
    {
      "detail" : "Messages is not installed on this Mac.",
      "kind" : "messages",
      "state" : "unavailable"
    },
    {
      "detail" : "Mail.app is not installed on this Mac.",
      "kind" : "mail",
      "state" : "unavailable"
    }
  ]
}
)");
}

TEST_F(BrokerMain, UsageErrorIsOneLineAndStatusOne) {
    EXPECT_EQ(run({"calendar-date"}), 1);
    expectFailure(brokerError(64, "Missing date. Use `calendar-date --date 2026-04-26`"));
    EXPECT_EQ(errorOutput.writes.size(), 1U);
}

TEST_F(BrokerMain, MissingArgumentZeroIsAMissingCommand) {
    EXPECT_EQ(runBroker({}, platform, output, errorOutput), 1);
    EXPECT_THAT(errorOutput.text(), HasSubstr("Code=64 \"Missing command. Use one of: status, "));
}

TEST_F(BrokerMain, LineBreaksAndBrokenTextInAMessageStayOnOneLine) {
    EXPECT_EQ(run({"a\nb\r\nc\xFF"}), 1);
    expectFailure(brokerError(64, "Unknown command: a b c\uFFFD"));
}

TEST_F(BrokerMain, RequestPrintsWhatWasRequestedAndTheReport) {
    platform.fakeConsent.statusAfterAnswer = 2;
    EXPECT_EQ(run({"request", "calendar"}), 0);
    EXPECT_THAT(output.text(), HasSubstr("\"requested\" : \"calendar\"\n}\n"));
    EXPECT_THAT(output.text(), HasSubstr("\"kind\" : \"calendar\",\n        \"remediation\" : \"Enable Calendar access "
                                         "for Vesk in System Settings.\",\n        \"state\" : \"denied\""));
    EXPECT_TRUE(errorOutput.writes.empty());
}

TEST_F(BrokerMain, OpenSettingsOpensThePaneAndPrintsAReport) {
    EXPECT_EQ(run({"open-settings", "calendar"}), 0);
    EXPECT_EQ(platform.fakeSettingsOpener.launched.size(), 1U);
    EXPECT_TRUE(platform.fakeConsent.requests.empty());
    EXPECT_THAT(output.text(), HasSubstr("\"requested\" : \"calendar\""));
}

TEST_F(BrokerMain, OpenSettingsWithoutAPaneOpensNothingAndPrintsAReport) {
    EXPECT_EQ(run({"open-settings", "icloud"}), 0);
    EXPECT_TRUE(platform.fakeSettingsOpener.launched.empty());
    EXPECT_THAT(output.text(), HasSubstr("\"requested\" : \"icloud\""));
}

TEST_F(BrokerMain, CalendarCommandsReachTheirOperations) {
    platform.fakeConsent.statuses[PrivacyService::events] = 3;
    platform.fakeEventStore.add(
        {.identifier = "w", .title = "Work", .sourceTitle = "Home", .allowsContentModifications = true});
    const std::pair<std::vector<std::string>, std::string> cases[] = {
        {{"calendar-list"}, "\"calendars\" : ["},
        {{"calendar-today"}, "\"events\" : ["},
        {{"calendar-date", "--date", "2026-04-26"}, "\"events\" : ["},
        {{"calendar-calendar", "--name", "Work"}, "\"events\" : ["},
        {{"calendar-next"}, "\"events\" : ["},
        {{"calendar-snapshot", "--start", "2026-04-26T00:00:00Z", "--end", "2026-04-27T00:00:00Z",
          "--exclude-calendar-name", "Other"},
         "\"events\" : ["},
        {{"calendar-create", "--calendar", "Work", "--title", "T", "--start", "2026-04-26 14:00", "--location", "L"},
         "\"title\" : \"T\""},
        {{"calendar-respond-invite", "--response", "yes", "--event-id", "none"}, "\"status\" : \"not_found\""},
    };
    for (const auto& [arguments, part] : cases) {
        SCOPED_TRACE(arguments[0]);
        output.writes.clear();
        EXPECT_EQ(run(arguments), 0) << errorOutput.text();
        EXPECT_THAT(output.text(), HasSubstr("\"brokerPath\" : \"Vesk.app\""));
        EXPECT_THAT(output.text(), HasSubstr(part));
    }
    ASSERT_EQ(platform.fakeEventStore.saved.size(), 1U);
    EXPECT_EQ(platform.fakeEventStore.saved[0].location, "L");
}

TEST_F(BrokerMain, TodoCommandsReachTheirOperations) {
    platform.fakeConsent.statuses[PrivacyService::reminders] = 3;
    const std::pair<std::vector<std::string>, std::string> cases[] = {
        {{"todo-add", "--title", "T", "--due", "2026-04-26"}, "\"operation\" : \"add\""},
        {{"todo-list"}, "\"operation\" : \"list\""},
        {{"todo-stats"}, "\"operation\" : \"stats\""},
        {{"todo-complete", "--id", "saved-1"}, "\"operation\" : \"complete\""},
        {{"todo-reopen", "--id", "saved-1"}, "\"operation\" : \"reopen\""},
        {{"todo-update", "--id", "saved-1", "--title", "U"}, "\"title\" : \"U\""},
        {{"todo-delete", "--id", "saved-1"}, "\"operation\" : \"delete\""},
    };
    for (const auto& [arguments, part] : cases) {
        SCOPED_TRACE(arguments[0]);
        output.writes.clear();
        EXPECT_EQ(run(arguments), 0) << errorOutput.text();
        EXPECT_THAT(output.text(), HasSubstr(part));
    }
    EXPECT_TRUE(platform.fakeReminderStore.stored.empty());
}

TEST_F(BrokerMain, ContactCommandsReachTheirOperations) {
    platform.fakeConsent.statuses[PrivacyService::contacts] = 3;
    platform.fakeFileReader.files["/c"] = R"({"name":"Dana Li"})";
    EXPECT_EQ(run({"contacts-save", "--request", "/c"}), 0) << errorOutput.text();
    EXPECT_THAT(output.text(), HasSubstr("\"name\" : \"Dana Li\""));
    output.writes.clear();
    EXPECT_EQ(run({"contacts-search", "--query", " dana "}), 0) << errorOutput.text();
    EXPECT_THAT(output.text(), HasSubstr("\"query\" : \"dana\""));
}

TEST_F(BrokerMain, DesktopCommandsReachTheirOperations) {
    platform.fakeConsent.processTrusted = platform.fakeConsent.screenCapture = true;
    test::FakeDesktop& desktop = platform.fakeDesktop;
    desktop.applications.all = {*desktop.applications.front};
    desktop.screens.all = {{.identifier = 1, .place = {0, 0, 10, 10}}};
    desktop.tree.applications[7]->with("AXFocusedUIElement", test::elementValue(test::fakeElement()));
    const std::pair<std::vector<std::string>, std::string> cases[] = {
        {{"active-app"}, "\"appName\" : \"Editor\""},
        {{"focused-element"}, "\"editable\" : false"},
        {{"activate-app", "--app", "edit"}, "\"activated\" : true"},
        {{"screenshot", "--output", "/o.png"}, "\"imagePath\" : \"\\/o.png\""},
        {{"click", "--x", "0", "--y", "1"}, "\"screenY\" : 10"},
        {{"type", "--text", "t"}, "\"textLength\" : 1"},
        {{"key", "--key", "tab"}, "\"key\" : \"tab\""},
    };
    for (const auto& [arguments, part] : cases) {
        SCOPED_TRACE(arguments[0]);
        output.writes.clear();
        EXPECT_EQ(run(arguments), 0) << errorOutput.text();
        EXPECT_THAT(output.text(), HasSubstr("\"brokerPath\" : \"\\/Applications\\/Vesk.app\\/Contents\\/Helpers"));
        EXPECT_THAT(output.text(), HasSubstr(part));
    }
}

TEST_F(BrokerMain, RequestFilesAreReadBeforeTheirOperation) {
    platform.fakeFileReader.files["/c"] = R"({"name":"D"})";
    platform.fakeFileReader.files["/m"] = R"({"profile":"instagram_reel","inputs":[{"path":"a"}],"outputPath":"o"})";
    platform.fakeFileReader.files["/p"] = R"({"html":"h","outputPath":"o"})";
    platform.fakeFileReader.files["/blank"] =
        R"({"name":" ","html":" ","outputPath":"o","inputs":[],"profile":"instagram_reel"})";
    const std::tuple<std::string, std::string, std::string> cases[] = {
        {"contacts-save", "/c", "Contact save request is missing a name."},
        {"media-compose", "/m", "Media compose request is missing inputs."},
        {"pdf-render-html", "/p", "PDF render request is missing HTML content."},
    };
    for (const auto& [word, path, blankMessage] : cases) {
        SCOPED_TRACE(word);
        if (word != "contacts-save") {
            errorOutput.writes.clear();
            EXPECT_EQ(run({word, "--request", path}), 1);
            expectFailure(brokerError(70, "The command \"" + word + "\" is not part of this build."));
        }
        errorOutput.writes.clear();
        EXPECT_EQ(run({word, "--request", "/blank"}), 1);
        expectFailure(brokerError(64, blankMessage));
        errorOutput.writes.clear();
        EXPECT_EQ(run({word, "--request", "/none"}), 1);
        EXPECT_THAT(errorOutput.text(), HasSubstr("fatal error Error Domain=NSPOSIXErrorDomain Code=2 \"/none: "));
    }
}

TEST_F(BrokerMain, MailAndMessagesPassTheGateFirst) {
    platform.fakeAutomation.installed = {"com.apple.mail", "com.apple.MobileSMS"};
    platform.fakeAutomation.results = {{"com.apple.mail", -1743}, {"com.apple.MobileSMS", -1743}};
    platform.fakeBundleInformation.granted[platform.bundle.path] = {
        {"com.apple.security.automation.apple-events", {true}}};
    const std::string refused = " access is not granted after Vesk requested it (state=denied). ";
    const std::string mail = "Mail" + refused
                             + "Mail Automation access is not granted for Vesk.app. Enable Vesk under System Settings "
                               "> Privacy & Security > Automation > Mail.";
    const std::string messages = "Messages" + refused
                                 + "Messages access is not granted for Vesk. Enable Vesk under System Settings > "
                                   "Privacy & Security > Automation > Messages.";
    const std::pair<std::vector<std::string>, std::string> cases[] = {
        {{"mail-list"}, mail},
        {{"mail-check-followup", "--subject", "s"}, mail},
        {{"messages-list"}, messages},
        {{"messages-send", "--phone", "1", "--message", "m"}, messages},
    };
    for (const auto& [arguments, message] : cases) {
        SCOPED_TRACE(arguments[0]);
        errorOutput.writes.clear();
        EXPECT_EQ(run(arguments), 1);
        expectFailure(brokerError(75, message));
    }
    EXPECT_TRUE(platform.fakeMail.scripts.empty());
    EXPECT_TRUE(platform.fakeMessages.scripts.empty());
}

TEST_F(BrokerMain, FailedWriteOfTheDocumentEndsOnTheFailurePath) {
    output.failure = ENOSPC;
    EXPECT_EQ(run({"status"}), 1);
    EXPECT_THAT(errorOutput.text(), HasSubstr("Error Domain=NSPOSIXErrorDomain Code=28 \"standard output: "));
    EXPECT_EQ(errorOutput.writes.size(), 1U);
}

TEST_F(BrokerMain, FailedWriteOfTheFailureLeavesTheStatus) {
    errorOutput.failure = EPIPE;
    EXPECT_EQ(run({}), 1);
}

TEST_F(BrokerMain, OtherExceptionsEndInOneLineToo) {
    const std::pair<std::function<void()>, std::string> cases[] = {
        {[] { throw std::bad_alloc(); }, "Error Domain=NSPOSIXErrorDomain Code=12 \"Cannot allocate memory\" "
                                         "UserInfo={NSLocalizedDescription=Cannot allocate memory}"},
        {[] { throw std::runtime_error("two\nlines"); }, brokerError(70, "two lines")},
        {[] { throw 7; }, brokerError(70, "An unknown failure ended the command.")},
        {[] { throw std::system_error(std::make_error_code(std::errc::permission_denied)); },
         "Error Domain=NSPOSIXErrorDomain Code=13 \"Permission denied\" "
         "UserInfo={NSLocalizedDescription=Permission denied}"},
    };
    for (const auto& [fail, rendering] : cases) {
        SCOPED_TRACE(rendering);
        errorOutput.writes.clear();
        platform.fakeConsent.onPrompt = fail;
        EXPECT_EQ(run({"calendar-today"}), 1);
        expectFailure(rendering);
    }
}

/// A consent whose request is dropped: nobody will ever resume the caller.
class LosingConsent : public test::FakeConsent {
public:
    Task<AccessAnswer> requestAccess(PrivacyService) override {
        co_await asio::async_initiate<const asio::use_awaitable_t<>&, void()>([](auto&&) {}, asio::use_awaitable);
        co_return AccessAnswer{};
    }
};

class LosingPlatform : public test::FakePlatform {
public:
    LosingConsent losing;
    Consent& consent() override { return losing; }
};

TEST_F(BrokerMain, AnAnswerThatNeverComesIsAFailure) {
    LosingPlatform losing;
    EXPECT_EQ(runBroker({"broker", "request", "calendar"}, losing, output, errorOutput), 1);
    expectFailure(brokerError(70, "The command ended without an answer."));
}

TEST_F(BrokerMain, QueuedLinesOfTheLogAreWritten) {
    platform.fakeEnvironment.variables["VESK_APP_SUPPORT_DIR"] = "/tmp/x";
    bool written = false;
    platform.fakeLogQueue.async([&] { written = true; });
    EXPECT_EQ(run({"status"}), 0);
    EXPECT_TRUE(written);
    written = false;
    platform.fakeLogQueue.async([&] { written = true; });
    EXPECT_EQ(run({"bogus"}), 1);
    EXPECT_TRUE(written);
}

} // namespace
} // namespace vesk
