#include "VeskCapabilityBroker/CommandLineParser.hpp"
#include "VeskCapabilityBroker/Dispatch.hpp"
#include "tests/fakes/FakePlatform.hpp"
#include "tests/fakes/RunTask.hpp"

#include <gmock/gmock.h>

namespace vesk {
namespace {

using testing::HasSubstr;
using testing::Not;

/// A user with full access, two calendars and one event; it is 2026-04-26 08:30 UTC. Each argument of a command has
/// an effect of its own, so that one that lands in another's place shows.
class DispatchTests : public testing::Test {
protected:
    DispatchTests() {
        platform.fakeConsent.statuses[PrivacyService::events] = 3;
        const auto work = platform.fakeEventStore.add(
            {.identifier = "w", .title = "Work", .sourceTitle = "S", .allowsContentModifications = true});
        platform.fakeEventStore.add(
            {.identifier = "h", .title = "Home", .sourceTitle = "S", .allowsContentModifications = true});
        CalendarEvent event;
        event.identifier = "e";
        event.calendar = work;
        event.title = "Standup";
        event.start = platform.fakeClock.time;
        event.end = event.start + std::chrono::hours(1);
        platform.fakeEventStore.occurrences.push_back(event);
    }

    /// The JSON of a command line, or the description of its failure.
    std::string answer(const std::vector<std::string>& arguments) {
        try {
            return test::runTask(json(parseCommand(arguments)));
        } catch (const ErrorRecord& error) {
            return error.description();
        }
    }

    test::FakePlatform platform;

private:
    Task<std::string> json(BrokerCommand command) {
        const AnyEncodable record = co_await dispatch(platform, std::move(command));
        co_return record.encodeClosure(JsonEncoder{});
    }
};

TEST_F(DispatchTests, SnapshotArguments) {
    const std::vector<std::string> range{"calendar-snapshot", "--start", "2026-04-26T00:00:00Z", "--end",
                                         "2026-04-27T00:00:00Z"};
    const auto with = [&](std::vector<std::string> exclusions) {
        exclusions.insert(exclusions.begin(), range.begin(), range.end());
        return answer(exclusions);
    };
    EXPECT_THAT(with({}), HasSubstr("\"Standup\""));
    EXPECT_THAT(with({"--exclude-calendar-id", "w"}), Not(HasSubstr("Work")));
    EXPECT_THAT(with({"--exclude-calendar-id", "Work"}), HasSubstr("Work"));
    EXPECT_THAT(with({"--exclude-calendar-name", "work"}), Not(HasSubstr("Work")));
    EXPECT_THAT(with({"--exclude-calendar-name", "w"}), HasSubstr("Work"));
    EXPECT_EQ(answer({"calendar-snapshot", "--start", "2026-04-27T00:00:00Z", "--end", "2026-04-26T00:00:00Z"}),
              "Calendar snapshot end time must be after the start time.");
}

TEST_F(DispatchTests, CreateArguments) {
    answer({"calendar-create", "--calendar", "Home", "--title", "T", "--start", "2026-04-26T10:00:00Z", "--end",
            "2026-04-26T12:00:00Z", "--location", "L", "--notes", "N"});
    answer({"calendar-create", "--all-day", "--calendar", "Work", "--title", "D", "--start", "2026-04-28"});
    ASSERT_EQ(platform.fakeEventStore.saved.size(), 2U);
    const NewEvent& timed = platform.fakeEventStore.saved[0];
    EXPECT_EQ(timed.calendarIdentifier, "h");
    EXPECT_EQ(timed.title, "T");
    EXPECT_EQ(timed.end - timed.start, std::chrono::hours(2));
    EXPECT_FALSE(timed.allDay);
    EXPECT_EQ(timed.location, "L");
    EXPECT_EQ(timed.notes, "N");
    EXPECT_TRUE(platform.fakeEventStore.saved[1].allDay);
}

TEST_F(DispatchTests, InviteArguments) {
    const auto respond = [&](std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "calendar-respond-invite");
        return answer(arguments);
    };
    EXPECT_EQ(respond({"--response", "perhaps", "--event-id", "e"}),
              "Unsupported invite response. Use accepted, declined, tentative, or propose_time.");
    EXPECT_THAT(respond({"--response", "maybe", "--event-id", "e"}),
                HasSubstr("\"requestedResponse\" : \"tentative\""));
    EXPECT_THAT(respond({"--response", "yes", "--event-id", "e"}), HasSubstr("no_current_user_attendee"));
    EXPECT_THAT(respond({"--response", "yes", "--title", "standup"}), HasSubstr("no_current_user_attendee"));
    EXPECT_THAT(respond({"--response", "yes", "--source-key", "standup"}), HasSubstr("not_found"));
    EXPECT_THAT(respond({"--response", "yes", "--source-key", "none", "--title", "standup"}), HasSubstr("not_found"));
    EXPECT_THAT(respond({"--response", "yes", "--title", "standup", "--start", "soon"}),
                HasSubstr("Invalid date/time: soon."));
    const std::string proposal =
        respond({"--response", "propose", "--event-id", "e", "--proposed-start", "P", "--proposed-end", "Q"});
    EXPECT_THAT(proposal, HasSubstr("\"proposedStartAt\" : \"P\""));
    EXPECT_THAT(proposal, HasSubstr("\"proposedEndAt\" : \"Q\""));
}

TEST_F(DispatchTests, DateAndCalendarNameArguments) {
    EXPECT_THAT(answer({"calendar-date", "--date", "2026-04-26"}), HasSubstr("\"requestedDate\" : \"2026-04-26\""));
    EXPECT_THAT(answer({"calendar-calendar", "--name", "work"}), HasSubstr("\"calendarName\" : \"Work\""));
    EXPECT_THAT(answer({"calendar-calendar", "--name", "Play"}),
                HasSubstr("Calendar \"Play\" was not found. Available calendars: Home, Work"));
}

TEST_F(DispatchTests, DesktopArguments) {
    platform.fakeConsent.processTrusted = platform.fakeConsent.screenCapture = true;
    test::FakeDesktop& desktop = platform.fakeDesktop;
    desktop.screens.all = {{.identifier = 1, .place = {0, 0, 100, 1000}}};
    EXPECT_EQ(answer({"activate-app", "--app", " Post"}),
              "No running macOS application matched `Post`. Use the visible app name or bundle id.");
    const std::string clicked = answer({"click", "--x", "0.25", "--y", "0.75", "--button", "right"});
    for (const char* field : {"\"screenX\" : 25", "\"screenY\" : 750", "\"button\" : \"right\""})
        EXPECT_THAT(clicked, HasSubstr(field));
    EXPECT_THAT(answer({"type", "--text", " ab "}), HasSubstr("\"textLength\" : 4"));
    const std::string pressed = answer({"key", "--key", "enter", "--modifiers", "shift,command"});
    EXPECT_THAT(pressed, HasSubstr("\"key\" : \"return\""));
    EXPECT_THAT(pressed, HasSubstr("\"shift\",\n    \"command\""));
    const std::string captured = answer({"screenshot", "--output", "shot.png"});
    EXPECT_THAT(captured, HasSubstr("\"imagePath\" : \"\\/home\\/dana\\/work\\/shot.png\""));
    EXPECT_THAT(captured, HasSubstr("\"bundlePath\" : \"\\/Applications\\/Vesk.app\""));
}

/// Mail and Messages are there and may be scripted.
class ScriptedDispatchTests : public DispatchTests {
protected:
    ScriptedDispatchTests() {
        platform.fakeAutomation.installed = {"com.apple.mail", "com.apple.MobileSMS"};
        platform.fakeAutomation.results = {{"com.apple.mail", 0}, {"com.apple.MobileSMS", 0}};
    }
    MailQuestion asked() const { return platform.fakeMail.scripts.back().question; }
};

TEST_F(ScriptedDispatchTests, MailArguments) {
    EXPECT_THAT(answer({"mail-list", "--view", "flagged", "--limit", "7"}), HasSubstr("\"limit\" : 7"));
    EXPECT_EQ(asked(), MailQuestion(MailListQuestion{MailView::flagged, 7}));
    const std::string checked = answer({"mail-check-followup", "--source-id", "S", "--message-id", "M", "--sender", "A",
                                        "--subject", "B", "--since", "2026-04-26T08:00:00Z", "--limit", "9"});
    for (const char* field : {"\"sourceId\" : \"S\"", "\"messageId\" : \"M\"", "\"sender\" : \"A\"",
                              "\"subject\" : \"B\"", "\"checkedSinceAt\" : \"2026-04-26T08:00:00Z\"", "\"limit\" : 9"})
        EXPECT_THAT(checked, HasSubstr(field));
    EXPECT_EQ(asked(), MailQuestion(MailFollowupQuestion{.cutoff = platform.fakeClock.time - std::chrono::minutes(30),
                                                         .subjectFilter = "b",
                                                         .senderFilter = "a",
                                                         .limit = 9}));
}

TEST_F(ScriptedDispatchTests, MessagesArguments) {
    platform.fakeMessages.chats = {"c1", "c2", "c3"};
    const std::string listed = answer({"messages-list", "--limit", "2"});
    EXPECT_THAT(listed, HasSubstr("\"c2\""));
    EXPECT_THAT(listed, Not(HasSubstr("\"c3\"")));
    EXPECT_THAT(answer({"messages-send", "--phone", "+49 1", "--message", "M"}), HasSubstr("\"phone\" : \"+491\""));
    EXPECT_EQ(platform.fakeMessages.sent, (std::vector<MessagesSendQuestion>{{"+491", "M"}}));
}

TEST_F(ScriptedDispatchTests, TheGateOfMailProbesFirst) {
    platform.fakeMail.outcome = MailScriptFailed{"AppleEvent timed out."};
    EXPECT_THAT(answer({"mail-list"}), HasSubstr("Mail access is not granted after Vesk requested it "
                                                 "(state=not_determined). "));
    ASSERT_EQ(platform.fakeMail.scripts.size(), 1U) << "the list is never asked for";
    EXPECT_EQ(asked(), MailQuestion(MailProbeQuestion{}));
}

} // namespace
} // namespace vesk
