#include "VeskPlatform/Linux/Vdir/EventComponent.hpp"

#include "tests/VeskPlatform/Linux/Vdir/CalendarText.hpp"

#include <gtest/gtest.h>

namespace vesk::test {
namespace {

using namespace vdir;

const std::string someStart = "DTSTART:20240101T090000\n";

std::optional<EventComponent> parsed(const std::string& lines, const std::vector<std::string>& addresses = {}) {
    return parseEvent(event(lines), addresses);
}

TEST(EventComponent, ReadsTimesByTheirAnchor) {
    using enum EventTime::Anchor;
    const struct {
        std::string line;
        std::optional<EventTime> expected;
    } cases[] = {
        {"DTSTART:20240102T030405", EventTime{wall("20240102T030405"), floating, ""}},
        {"DTSTART:20240102T030405Z", EventTime{wall("20240102T030405"), utc, ""}},
        {"DTSTART;TZID=Europe/Berlin:20240102T030405", EventTime{wall("20240102T030405"), zoned, "Europe/Berlin"}},
        {"DTSTART;TZID=\"a, b\":20240102T030405", EventTime{wall("20240102T030405"), zoned, "a, b"}},
        {"DTSTART;TZID=Europe/Berlin:20240102T030405Z", EventTime{wall("20240102T030405"), utc, ""}},
        {"DTSTART;VALUE=DATE:20240102", EventTime{wall("20240102"), date, ""}},
        {"DTSTART:20240102", EventTime{wall("20240102"), date, ""}},
        {"DTSTART:20240102T030460", EventTime{wall("20240102T030459"), floating, ""}},
        {"DTSTART:20240230T030405", std::nullopt},
        {"DTSTART:20240102T250000", std::nullopt},
        {"DTSTART:20241302T030405", std::nullopt},
        {"DTSTART:soon", std::nullopt},
        {"DTSTART:", std::nullopt},
        {"DTEND:20240102T030405", std::nullopt},
    };
    for (const auto& given : cases) {
        SCOPED_TRACE(given.line);
        const auto component = parsed(given.line + "\n");
        ASSERT_EQ(component.has_value(), given.expected.has_value());
        if (!component) continue;
        EXPECT_EQ(component->start.wall, given.expected->wall);
        EXPECT_EQ(component->start.anchor, given.expected->anchor);
        EXPECT_EQ(component->start.tzid, given.expected->tzid);
    }
}

TEST(EventComponent, ReadsTexts) {
    const auto component = parsed(someStart
                                  + "UID:u\nSUMMARY:a\\, b\\; c\\n d\nLOCATION;LANGUAGE=de:Ort\n"
                                    "DESCRIPTION:fol\n ded\nURL:https://example.org/?a=1\\,2\n");
    ASSERT_TRUE(component);
    EXPECT_EQ(component->uid, "u");
    EXPECT_EQ(component->summary, "a, b; c\n d");
    EXPECT_EQ(component->location, "Ort");
    EXPECT_EQ(component->description, "folded");
    EXPECT_EQ(component->url, "https://example.org/?a=1\\,2");
}

TEST(EventComponent, LeavesOutWhatIsNotThere) {
    const auto component = parsed(someStart);
    ASSERT_TRUE(component);
    EXPECT_EQ(component->uid, "");
    EXPECT_FALSE(component->summary || component->location || component->description || component->url);
    EXPECT_FALSE(component->lastModified || component->organizer || component->attendees);
    EXPECT_EQ(component->status, 0);
    EXPECT_EQ(component->availability, 0);
}

TEST(EventComponent, RepairsBytesThatAreNotUtf8) {
    const auto component = parsed(someStart + "SUMMARY:a\xFF" + "b" + std::string(1, '\0') + "c\xC3\n");
    ASSERT_TRUE(component);
    EXPECT_EQ(component->summary, "a\uFFFD"
                                  "b\uFFFD"
                                  "c\uFFFD");
}

TEST(EventComponent, NumbersStatus) {
    const struct {
        std::string lines;
        int status;
    } cases[] = {{"", 0},
                 {"STATUS:CONFIRMED\n", 1},
                 {"STATUS:TENTATIVE\n", 2},
                 {"STATUS:CANCELLED\n", 3},
                 {"STATUS:cancelled\n", 3},
                 {"STATUS:NEEDS-ACTION\n", 0},
                 {"STATUS:WHATEVER\n", 0}};
    for (const auto& given : cases) EXPECT_EQ(parsed(someStart + given.lines)->status, given.status) << given.lines;
}

TEST(EventComponent, NumbersAvailability) {
    const std::string busy = "X-MICROSOFT-CDO-BUSYSTATUS:";
    const struct {
        std::string lines;
        int availability;
    } cases[] = {{"", 0},
                 {"TRANSP:OPAQUE\n", 0},
                 {"TRANSP:TRANSPARENT\n", 1},
                 {"TRANSP:transparent\n", 1},
                 {busy + "FREE\n", 1},
                 {busy + "TENTATIVE\n", 2},
                 {busy + "OOF\n", 3},
                 {busy + "BUSY\n", 0},
                 {busy + "oof\n", 3},
                 {"x-microsoft-cdo-busystatus:FREE\n", 1},
                 {busy + "OOF\nTRANSP:TRANSPARENT\n", 3},
                 {"TRANSP:TRANSPARENT\n" + busy + "BUSY\n", 0},
                 {"TRANSP:TRANSPARENT\n" + busy + "WHATEVER\n", 1}};
    for (const auto& given : cases)
        EXPECT_EQ(parsed(someStart + given.lines)->availability, given.availability) << given.lines;
}

TEST(EventComponent, NumbersAttendees) {
    struct AttendeeCase {
        std::string parameters;
        int status, role, type;
    };
    const AttendeeCase cases[] = {
        {"", 1, 1, 1},
        {";PARTSTAT=NEEDS-ACTION", 1, 1, 1},
        {";PARTSTAT=ACCEPTED", 2, 1, 1},
        {";PARTSTAT=DECLINED", 3, 1, 1},
        {";PARTSTAT=TENTATIVE", 4, 1, 1},
        {";PARTSTAT=DELEGATED", 5, 1, 1},
        {";PARTSTAT=COMPLETED", 6, 1, 1},
        {";PARTSTAT=IN-PROCESS", 7, 1, 1},
        {";PARTSTAT=accepted", 2, 1, 1},
        {";PARTSTAT=X-OTHER", 0, 1, 1},
        {";ROLE=REQ-PARTICIPANT", 1, 1, 1},
        {";ROLE=OPT-PARTICIPANT", 1, 2, 1},
        {";ROLE=CHAIR", 1, 3, 1},
        {";ROLE=NON-PARTICIPANT", 1, 4, 1},
        {";ROLE=X-OTHER", 1, 0, 1},
        {";CUTYPE=INDIVIDUAL", 1, 1, 1},
        {";CUTYPE=ROOM", 1, 1, 2},
        {";CUTYPE=RESOURCE", 1, 1, 3},
        {";CUTYPE=GROUP", 1, 1, 4},
        {";CUTYPE=UNKNOWN", 1, 1, 0},
    };
    for (const AttendeeCase& given : cases) {
        SCOPED_TRACE(given.parameters);
        const auto component = parsed(someStart + "ATTENDEE" + given.parameters + ":mailto:a@example.org\n");
        ASSERT_TRUE(component && component->attendees);
        EXPECT_EQ(*component->attendees, (std::vector{EventParticipant{.name = std::nullopt,
                                                                       .url = "mailto:a@example.org",
                                                                       .status = given.status,
                                                                       .role = given.role,
                                                                       .type = given.type}}));
    }
}

TEST(EventComponent, GivesAnOrganizerDefaultsOfItsOwn) {
    const auto plain = parsed(someStart + "ORGANIZER:mailto:a@example.org\n");
    EXPECT_EQ(plain->organizer, (EventParticipant{.name = std::nullopt, .url = "mailto:a@example.org", .type = 1}));
    EXPECT_FALSE(plain->attendees);
    const auto told =
        parsed(someStart + "ORGANIZER;CN=\"B, A\";PARTSTAT=ACCEPTED;ROLE=CHAIR;CUTYPE=GROUP:mailto:a@b.c\n");
    EXPECT_EQ(told->organizer,
              (EventParticipant{.name = "B, A", .url = "mailto:a@b.c", .status = 2, .role = 3, .type = 4}));
}

TEST(EventComponent, KnowsTheCurrentUserByAddressCaseAside) {
    const struct {
        std::string address;
        bool isUser;
    } cases[] = {{"mailto:me@example.org", true},   {"MAILTO:Me@Example.ORG", true},   {"me@example.org", true},
                 {"mailto: me@example.org", false}, {"mailto:you@example.org", false}, {"mailto:", false}};
    for (const auto& given : cases) {
        SCOPED_TRACE(given.address);
        const auto component =
            parsed(someStart + "ATTENDEE:" + given.address + "\n", {"other@example.org", "me@example.org"});
        ASSERT_TRUE(component && component->attendees);
        EXPECT_EQ(component->attendees->at(0).isCurrentUser, given.isUser);
    }
}

TEST(EventComponent, KeepsAttendeesInTheirOrder) {
    const auto component = parsed(someStart + "ATTENDEE;CN=B:mailto:b@c.d\nATTENDEE;CN=A:mailto:a@c.d\n");
    ASSERT_EQ(component->attendees->size(), 2U);
    EXPECT_EQ(component->attendees->at(0).name, "B");
    EXPECT_EQ(component->attendees->at(1).name, "A");
}

TEST(EventComponent, ReadsLastModified) {
    EXPECT_EQ(parsed(someStart + "LAST-MODIFIED:20240102T030405Z\n")->lastModified,
              Instant{wall("20240102T030405").time_since_epoch()});
    EXPECT_FALSE(parsed(someStart + "LAST-MODIFIED:never\n")->lastModified);
}

TEST(EventComponent, ReadsDurations) {
    using namespace std::chrono;
    const struct {
        std::string text;
        days wholeDays;
        seconds exact;
    } cases[] = {{"PT15M", days(0), minutes(15)}, {"P1D", days(1), seconds(0)},
                 {"P2W", days(14), seconds(0)},   {"P1DT2H3M4S", days(1), hours(2) + minutes(3) + seconds(4)},
                 {"-PT1H", days(0), -hours(1)},   {"P99999999D", days(400'000), seconds(0)}};
    for (const auto& given : cases) {
        SCOPED_TRACE(given.text);
        const auto component = parsed(someStart + "DURATION:" + given.text + "\n");
        ASSERT_TRUE(component && component->duration);
        EXPECT_EQ(component->duration->days, given.wholeDays);
        EXPECT_EQ(component->duration->exact, given.exact);
    }
}

TEST(EventComponent, KeepsRulesAsTheyStandAndNoMoreThanAnybodyWrites) {
    const auto component = parsed(someStart + "RRULE:FREQ=SECONDLY;INTERVAL=86400\nEXRULE:FREQ=DAILY;X-A=1\n");
    EXPECT_EQ(component->rules, std::vector<std::string>{"FREQ=SECONDLY;INTERVAL=86400"});
    EXPECT_EQ(component->excludedRules, std::vector<std::string>{"FREQ=DAILY;X-A=1"});
    EXPECT_EQ(parsed(someStart + "RRULE:RSCALE=HEBREW;FREQ=YEARLY\n")->rules.size(), 1U);
    std::string many;
    for (int i = 0; i < 1000; ++i) many += "RRULE:FREQ=DAILY\n";
    EXPECT_EQ(parsed(someStart + many)->rules.size(), 16U);
}

TEST(EventComponent, IsNoneForAnythingElse) {
    EXPECT_FALSE(parseEvent("", {}));
    EXPECT_FALSE(parseEvent("BEGIN:VTODO\nDTSTART:20240101T090000\nEND:VTODO\n", {}));
    EXPECT_FALSE(parseEvent("\xFF\xFE", {}));
}

} // namespace
} // namespace vesk::test
