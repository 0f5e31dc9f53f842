#include "VeskCapabilityBroker/ScanningCommands.hpp"
#include "tests/broker/Parsing.hpp"

namespace vesk {
namespace {

using namespace command;
using test::expectAllParse;
using test::ParserCase;

constexpr auto absent = std::nullopt;

TEST(ScanningCommands, UnknownArgumentsAreNamedByTheirCommand) {
    for (const std::string word :
         {"calendar-snapshot", "calendar-create", "calendar-respond-invite", "todo-list", "todo-add", "todo-update",
          "messages-list", "messages-send", "mail-list", "mail-check-followup", "click"})
        expectAllParse({
            {{word, "--bogus"}, "Unknown " + word + " argument: --bogus"},
            {{word, "x", "--bogus"}, "Unknown " + word + " argument: x"},
            {{word, ""}, "Unknown " + word + " argument: "},
        });
}

TEST(ScanningCommands, CalendarSnapshot) {
    const std::string noStart = "Missing snapshot start time. Use `calendar-snapshot --start \"2026-04-26T00:00:00Z\" "
                                "--end \"2026-04-27T00:00:00Z\"`";
    const std::string noEnd = "Missing snapshot end time. Use `calendar-snapshot --start \"2026-04-26T00:00:00Z\" "
                              "--end \"2026-04-27T00:00:00Z\"`";
    const auto snapshot = [](std::vector<std::string> ids, std::vector<std::string> names) {
        return CalendarSnapshot{"A", "B", std::move(ids), std::move(names)};
    };
    const std::string word = "calendar-snapshot", id = "--exclude-calendar-id", name = "--exclude-calendar-name";
    expectAllParse({
        {{word}, noStart},
        {{word, "--end", "B"}, noStart},
        {{word, "--start", " ", "--end", "B"}, noStart},
        {{word, "--start", "A"}, noEnd},
        {{word, "--start", "A", "--end", "\t"}, noEnd},
        {{word, "--start", "A", "--end", "B"}, snapshot({}, {})},
        {{word, "--end", "B", "--start", "A"}, snapshot({}, {})},
        {{word, "--start", "A", "--end", "B", id}, snapshot({}, {})},
        {{word, "--start", "A", "--end", "B", id, " "}, snapshot({}, {})},
        {{word, "--start", "A", "--end", "B", name, ""}, snapshot({}, {})},
        {{word, id, "2", "--start", "A", id, " 1 ", name, "N", "--end", "B", id, "2", name, "--start"},
         snapshot({"2", " 1 ", "2"}, {"N", "--start"})},
        {{word, "--start", "A", "--end", "B", id, "1", id}, snapshot({"1"}, {})},
        {{word, "--start", "A", "--end", "B", "--all-day"}, "Unknown calendar-snapshot argument: --all-day"},
    });
}

TEST(ScanningCommands, CalendarCreate) {
    const std::string noCalendar = "Missing calendar name. Use `calendar-create --calendar Work --title \"Team "
                                   "Meeting\" --start \"2026-04-26 14:00\"`";
    const std::string word = "calendar-create";
    const auto plain = CalendarCreate{.calendarName = "Work",
                                      .title = "T",
                                      .startAt = "S",
                                      .endAt = absent,
                                      .allDay = false,
                                      .location = absent,
                                      .notes = absent};
    auto whole = plain;
    whole.endAt = "E";
    whole.allDay = true;
    whole.location = " L ";
    whole.notes = "";
    auto later = plain;
    later.title = "Later";
    expectAllParse({
        {{word}, noCalendar},
        {{word, "--calendar", "", "--title", "T", "--start", "S"}, noCalendar},
        {{word, "--calendar", "Work"}, "Missing event title for calendar-create."},
        {{word, "--calendar", "Work", "--title", "T"}, "Missing start time for calendar-create."},
        {{word, "--calendar", "Work", "--title", "T", "--start", " "}, "Missing start time for calendar-create."},
        {{word, "--calendar", "Work", "--title", "T", "--start", "S"}, plain},
        {{word, "--notes", "", "--all-day", "--location", " L ", "--end", "E", "--start", "S", "--title", "T",
          "--calendar", "Work"},
         whole},
        {{word, "--calendar", "Work", "--title", "T", "--start", "S", "--notes"}, plain},
        {{word, "--calendar", "Work", "--title", "T", "--start", "S", "--notes", "n", "--notes"}, plain},
        {{word, "--calendar", "Work", "--title", "T", "--start", "S", "--title"},
         "Missing event title for calendar-create."},
        {{word, "--calendar", "Work", "--title", "T", "--start", "S", "--title", "Later"}, later},
        {{word, "--all-day", "--name", "x"}, "Unknown calendar-create argument: --name"},
        {{word, "--name", "x"}, "Unknown calendar-create argument: --name"},
    });
}

TEST(ScanningCommands, CalendarRespondInvite) {
    const std::string word = "calendar-respond-invite";
    const std::string noResponse =
        "Missing invite response. Use `calendar-respond-invite --response accepted --event-id <event-id>`.";
    CalendarRespondInvite plain;
    plain.response = "accepted";
    const CalendarRespondInvite whole{.response = "r",
                                      .eventIdentifier = "e",
                                      .sourceKey = "k",
                                      .title = "t",
                                      .startAt = "s",
                                      .proposedStartAt = "p",
                                      .proposedEndAt = "q"};
    expectAllParse({
        {{word}, noResponse},
        {{word, "--event-id", "e"}, noResponse},
        {{word, "--response", " "}, noResponse},
        {{word, "--response"}, noResponse},
        {{word, "--response", "accepted"}, plain},
        {{word, "--response", "accepted", "--event-id"}, plain},
        {{word, "--proposed-end", "q", "--proposed-start", "p", "--start", "s", "--title", "t", "--source-key", "k",
          "--event-id", "e", "--response", "r"},
         whole},
    });
}

TEST(ScanningCommands, TodoList) {
    const std::string invalid = "Invalid todo view. Use `open`, `done`, `all`, or `today`.";
    for (const auto& [view, raw] : rawValueTable<CapabilityTodoView>)
        expectAllParse({{{"todo-list", "--view", std::string(raw)}, TodoList{view}}});
    expectAllParse({
        {{"todo-list"}, TodoList{CapabilityTodoView::open}},
        {{"todo-list", "--view"}, invalid},
        {{"todo-list", "--view", "Open"}, invalid},
        {{"todo-list", "--view", ""}, invalid},
        {{"todo-list", "--view", "done", "--view", "all"}, TodoList{CapabilityTodoView::all}},
        {{"todo-list", "--view", "done", "--view"}, invalid},
        {{"todo-list", "--view", "x", "--bogus"}, invalid},
    });
}

TEST(ScanningCommands, TodoAdd) {
    const std::string noTitle =
        "Missing todo title. Use `todo-add --title \"Ship onboarding polish\" [--notes ...] [--due ...]`";
    expectAllParse({
        {{"todo-add"}, noTitle},
        {{"todo-add", "--notes", "n"}, noTitle},
        {{"todo-add", "--title", "  "}, noTitle},
        {{"todo-add", "--title", "--notes"}, TodoAdd{"--notes", absent, absent}},
        {{"todo-add", "--due", "d", "--notes", "n", "--title", "t"}, TodoAdd{"t", "n", "d"}},
        {{"todo-add", "--title", "t", "--due"}, TodoAdd{"t", absent, absent}},
    });
}

TEST(ScanningCommands, TodoUpdate) {
    const std::string noId =
        "Missing todo id. Use `todo-update --id <todo-id> [--title ...] [--notes ...] [--due ...] [--clear-due]`";
    expectAllParse({
        {{"todo-update"}, noId},
        {{"todo-update", "--clear-due"}, noId},
        {{"todo-update", "--id", "\n"}, noId},
        {{"todo-update", "--id", "1"}, TodoUpdate{"1", absent, absent, absent, false}},
        {{"todo-update", "--clear-due", "--id", "1"}, TodoUpdate{"1", absent, absent, absent, true}},
        {{"todo-update", "--id", "1", "--clear-due"}, TodoUpdate{"1", absent, absent, absent, true}},
        {{"todo-update", "--due", "d", "--notes", "", "--title", " ", "--id", "1"},
         TodoUpdate{"1", " ", "", "d", false}},
    });
}

const std::string badLimits[] = {"0",   "-3",  "abc", "",    " 7",  "7 ", "+",     "-",
                                 "+-7", "++7", "7.0", "1e2", "0x7", "٧",  "7,000", "9223372036854775808"};

const std::pair<std::string, std::int64_t> goodLimits[] = {
    {"1", 1}, {"+7", 7}, {"007", 7}, {"5000", 5000}, {"9223372036854775807", INT64_MAX}};

TEST(ScanningCommands, MessagesList) {
    const std::string invalid = "Invalid chat limit. Use `messages-list --limit 20`.";
    for (const std::string& text : badLimits) expectAllParse({{{"messages-list", "--limit", text}, invalid}});
    for (const auto& [text, limit] : goodLimits)
        expectAllParse({{{"messages-list", "--limit", text}, MessagesList{limit}}});
    expectAllParse({
        {{"messages-list"}, MessagesList{20}},
        {{"messages-list", "--limit"}, invalid},
        {{"messages-list", "--limit", "3", "--limit"}, invalid},
        {{"messages-list", "--limit", "3", "--limit", "4"}, MessagesList{4}},
    });
}

TEST(ScanningCommands, MessagesSend) {
    const std::string noPhone = "Missing phone number. Use `messages-send --phone +4917612345678 --message \"hello\"`";
    const std::string noMessage = "Missing message text for messages-send.";
    expectAllParse({
        {{"messages-send"}, noPhone},
        {{"messages-send", "--message", "m"}, noPhone},
        {{"messages-send", "--phone", " ", "--message", "m"}, noPhone},
        {{"messages-send", "--phone", "p"}, noMessage},
        {{"messages-send", "--phone", "p", "--message", ""}, noMessage},
        {{"messages-send", "--message", " m ", "--phone", "p"}, MessagesSend{"p", " m "}},
    });
}

TEST(ScanningCommands, MailList) {
    const std::string badView = "Invalid Mail view. Use `unread`, `flagged`, or `recent`.";
    const std::string badLimit = "Invalid Mail limit. Use `mail-list --view unread --limit 10`.";
    for (const auto& [view, raw] : rawValueTable<CapabilityMailView>)
        expectAllParse({{{"mail-list", "--view", std::string(raw)}, MailList{view, 10}}});
    for (const std::string& text : badLimits) expectAllParse({{{"mail-list", "--limit", text}, badLimit}});
    for (const auto& [text, limit] : goodLimits)
        expectAllParse({{{"mail-list", "--limit", text}, MailList{CapabilityMailView::unread, limit}}});
    expectAllParse({
        {{"mail-list"}, MailList{CapabilityMailView::unread, 10}},
        {{"mail-list", "--view"}, badView},
        {{"mail-list", "--view", "all"}, badView},
        {{"mail-list", "--limit"}, badLimit},
        {{"mail-list", "--limit", "x", "--view", "x"}, badLimit},
        {{"mail-list", "--view", "x", "--limit", "x"}, badView},
    });
}

TEST(ScanningCommands, MailCheckFollowup) {
    const std::string word = "mail-check-followup";
    const std::string needed = "mail-check-followup requires --subject or --sender.";
    const std::string badLimit = "Invalid Mail follow-up limit. Use `mail-check-followup --subject \"Subject\" --since "
                                 "2026-06-03T09:00:00Z --limit 20`.";
    MailCheckFollowup subject, sender;
    subject.subject = "S";
    sender.sender = "s";
    sender.subject = " ";
    const MailCheckFollowup whole{
        .sourceId = "i", .messageId = "m", .sender = "s", .subject = "S", .sinceAt = "t", .limit = 3};
    for (const std::string& text : badLimits) expectAllParse({{{word, "--limit", text}, badLimit}});
    expectAllParse({
        {{word}, needed},
        {{word, "--source-id", "i", "--message-id", "m", "--since", "t"}, needed},
        {{word, "--subject", "  ", "--sender", ""}, needed},
        {{word, "--subject", "S", "--subject"}, needed},
        {{word, "--limit"}, badLimit},
        {{word, "--subject", "S"}, subject},
        {{word, "--sender", "s", "--subject", " "}, sender},
        {{word, "--limit", "3", "--since", "t", "--subject", "S", "--sender", "s", "--message-id", "m", "--source-id",
          "i"},
         whole},
    });
}

TEST(ScanningCommands, ClickCoordinates) {
    const std::string badX = "Invalid --x value. Use a normalized decimal between 0 and 1.";
    const std::string badY = "Invalid --y value. Use a normalized decimal between 0 and 1.";
    for (const std::string text : {"1.0001", "-0.1", "nan", "inf", "-inf", "abc", "", " 0.5", "0.5 ", "0,5", "0.5x",
                                   "+-0.5", "++0.5", "1e400", "-1e400", "0x0.8", "0.5.5", "e5"})
        expectAllParse({
            {{"click", "--x", text, "--y", "0"}, badX},
            {{"click", "--x", "0", "--y", text}, badY},
        });
    const std::pair<std::string, double> good[] = {{"0", 0},      {"1", 1},      {"0.5", 0.5},  {".5", 0.5},
                                                   {"1.", 1},     {"+0.5", 0.5}, {"5e-1", 0.5}, {"5E-1", 0.5},
                                                   {"1e-400", 0}, {"-0", 0},     {"1.0", 1}};
    for (const auto& [text, value] : good)
        expectAllParse({{{"click", "--x", text, "--y", "1"}, Click{value, 1, CapabilityMouseButton::left}}});
}

TEST(ScanningCommands, Click) {
    const std::string missing = "Missing click coordinates. Use `click --x 0.5 --y 0.5 [--button left|right]`";
    const std::string badX = "Invalid --x value. Use a normalized decimal between 0 and 1.";
    const std::string badButton = "Invalid --button value. Use `left` or `right`.";
    using enum CapabilityMouseButton;
    expectAllParse({
        {{"click"}, missing},
        {{"click", "--x", "0.5"}, missing},
        {{"click", "--y", "0.5"}, missing},
        {{"click", "--button", "right"}, missing},
        {{"click", "--x"}, badX},
        {{"click", "--x", "0", "--y", "1"}, Click{0, 1, left}},
        {{"click", "--button", "right", "--y", "0.25", "--x", "0.75"}, Click{0.75, 0.25, right}},
        {{"click", "--button", "left", "--x", "0", "--y", "0"}, Click{0, 0, left}},
        {{"click", "--x", "0", "--y", "0", "--button", "middle"}, badButton},
        {{"click", "--x", "0", "--y", "0", "--button"}, badButton},
        {{"click", "--x", "0", "--x", "1", "--y", "0"}, Click{1, 0, left}},
        {{"click", "--x", "0", "--y", "0", "--x"}, badX},
        {{"click", "--x", "abc", "--bogus", "1"}, badX},
        {{"click", "--bogus", "1", "--x", "abc"}, "Unknown click argument: --bogus"},
    });
}

} // namespace
} // namespace vesk
