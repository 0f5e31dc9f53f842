#include "VeskCapabilityBroker/ScanningCommands.hpp"

#include "VeskCapabilityBroker/ArgumentScanner.hpp"

#include <charconv>
#include <cstdlib>
#include <utility>

namespace vesk {
namespace {

using Text = std::optional<std::string>;

/// A draft holds what the flags gave; the required ones are checked when the scan is over.
std::string requiredText(Text& text, std::string_view message) {
    if (!text || isBlank(*text)) throw UsageError(std::string(message));
    return std::move(*text);
}

/// Base 10, one sign at most, nothing around it, within 64 bits.
std::optional<std::int64_t> wholeNumber(std::string_view text) {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) return std::nullopt;
    }
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

/// The whole of `text` as a decimal number between 0 and 1. Not by std::from_chars, which libc++ lacks for fractions;
/// what std::strtod alone would take beside decimal numbers has other characters.
std::optional<double> fraction(const std::string& text) {
    if (text.find_first_not_of("0123456789+-.eE") != std::string::npos) return std::nullopt;
    char* stop = nullptr;
    const double value = std::strtod(text.c_str(), &stop);
    if (text.empty() || stop != text.c_str() + text.size()) return std::nullopt;
    const bool inside = value >= 0 && value <= 1;
    return inside ? std::optional(value) : std::nullopt;
}

template <class Value> Value validated(std::optional<Value> value, std::string_view message) {
    if (!value) throw UsageError(std::string(message));
    return *value;
}

std::int64_t limitOf(const std::string* text, std::string_view message) {
    const auto value = text == nullptr ? std::nullopt : wholeNumber(*text);
    return validated(value && *value >= 1 ? value : std::nullopt, message);
}

template <RawEnumeration E> E wordOf(const std::string* text, std::string_view message) {
    return validated(text == nullptr ? std::nullopt : fromRawValue<E>(*text), message);
}

double coordinateOf(const std::string* text, std::string_view message) {
    return validated(text == nullptr ? std::nullopt : fraction(*text), message);
}

} // namespace

BrokerCommand parseCalendarSnapshot(Arguments rest) {
    struct Draft {
        Text start, end;
        std::vector<std::string> identifiers, names;
    };
    static constexpr ScannedFlag<Draft> flags[] = {
        {"--start", &Draft::start},
        {"--end", &Draft::end},
        {"--exclude-calendar-id", &Draft::identifiers},
        {"--exclude-calendar-name", &Draft::names},
    };
    auto draft = scanArguments<Draft>(rest, flags, "Unknown calendar-snapshot argument: ");
    command::CalendarSnapshot command;
    command.startAt = requiredText(draft.start, "Missing snapshot start time. Use `calendar-snapshot --start "
                                                "\"2026-04-26T00:00:00Z\" --end \"2026-04-27T00:00:00Z\"`");
    command.endAt = requiredText(draft.end, "Missing snapshot end time. Use `calendar-snapshot --start "
                                            "\"2026-04-26T00:00:00Z\" --end \"2026-04-27T00:00:00Z\"`");
    command.excludeCalendarIdentifiers = std::move(draft.identifiers);
    command.excludeCalendarNames = std::move(draft.names);
    return command;
}

BrokerCommand parseCalendarCreate(Arguments rest) {
    struct Draft {
        Text calendar, title, start, end, location, notes;
        bool allDay = false;
    };
    static constexpr ScannedFlag<Draft> flags[] = {
        {"--calendar", &Draft::calendar}, {"--title", &Draft::title},       {"--start", &Draft::start},
        {"--end", &Draft::end},           {"--location", &Draft::location}, {"--notes", &Draft::notes},
        {"--all-day", &Draft::allDay},
    };
    auto draft = scanArguments<Draft>(rest, flags, "Unknown calendar-create argument: ");
    command::CalendarCreate command;
    command.calendarName =
        requiredText(draft.calendar, "Missing calendar name. Use `calendar-create --calendar Work --title \"Team "
                                     "Meeting\" --start \"2026-04-26 14:00\"`");
    command.title = requiredText(draft.title, "Missing event title for calendar-create.");
    command.startAt = requiredText(draft.start, "Missing start time for calendar-create.");
    command.endAt = std::move(draft.end);
    command.allDay = draft.allDay;
    command.location = std::move(draft.location);
    command.notes = std::move(draft.notes);
    return command;
}

BrokerCommand parseCalendarRespondInvite(Arguments rest) {
    struct Draft {
        Text response, eventId, sourceKey, title, start, proposedStart, proposedEnd;
    };
    static constexpr ScannedFlag<Draft> flags[] = {
        {"--response", &Draft::response},
        {"--event-id", &Draft::eventId},
        {"--source-key", &Draft::sourceKey},
        {"--title", &Draft::title},
        {"--start", &Draft::start},
        {"--proposed-start", &Draft::proposedStart},
        {"--proposed-end", &Draft::proposedEnd},
    };
    auto draft = scanArguments<Draft>(rest, flags, "Unknown calendar-respond-invite argument: ");
    command::CalendarRespondInvite command;
    command.response =
        requiredText(draft.response, "Missing invite response. Use `calendar-respond-invite --response accepted "
                                     "--event-id <event-id>`.");
    command.eventIdentifier = std::move(draft.eventId);
    command.sourceKey = std::move(draft.sourceKey);
    command.title = std::move(draft.title);
    command.startAt = std::move(draft.start);
    command.proposedStartAt = std::move(draft.proposedStart);
    command.proposedEndAt = std::move(draft.proposedEnd);
    return command;
}

BrokerCommand parseTodoList(Arguments rest) {
    using Draft = command::TodoList;
    static constexpr ScannedFlag<Draft> flags[] = {
        {"--view",
         +[](Draft& draft, const std::string* value) {
             draft.view =
                 wordOf<CapabilityTodoView>(value, "Invalid todo view. Use `open`, `done`, `all`, or `today`.");
         }},
    };
    return scanArguments<Draft>(rest, flags, "Unknown todo-list argument: ");
}

BrokerCommand parseTodoAdd(Arguments rest) {
    struct Draft {
        Text title, notes, due;
    };
    static constexpr ScannedFlag<Draft> flags[] = {
        {"--title", &Draft::title},
        {"--notes", &Draft::notes},
        {"--due", &Draft::due},
    };
    auto draft = scanArguments<Draft>(rest, flags, "Unknown todo-add argument: ");
    command::TodoAdd command;
    command.title = requiredText(draft.title, "Missing todo title. Use `todo-add --title \"Ship onboarding polish\" "
                                              "[--notes ...] [--due ...]`");
    command.notes = std::move(draft.notes);
    command.due = std::move(draft.due);
    return command;
}

BrokerCommand parseTodoUpdate(Arguments rest) {
    struct Draft {
        Text id, title, notes, due;
        bool clearDue = false;
    };
    static constexpr ScannedFlag<Draft> flags[] = {
        {"--id", &Draft::id},   {"--title", &Draft::title},        {"--notes", &Draft::notes},
        {"--due", &Draft::due}, {"--clear-due", &Draft::clearDue},
    };
    auto draft = scanArguments<Draft>(rest, flags, "Unknown todo-update argument: ");
    command::TodoUpdate command;
    command.id = requiredText(draft.id, "Missing todo id. Use `todo-update --id <todo-id> [--title ...] [--notes ...] "
                                        "[--due ...] [--clear-due]`");
    command.title = std::move(draft.title);
    command.notes = std::move(draft.notes);
    command.due = std::move(draft.due);
    command.clearDue = draft.clearDue;
    return command;
}

BrokerCommand parseMessagesList(Arguments rest) {
    using Draft = command::MessagesList;
    static constexpr ScannedFlag<Draft> flags[] = {
        {"--limit",
         +[](Draft& draft, const std::string* value) {
             draft.limit = limitOf(value, "Invalid chat limit. Use `messages-list --limit 20`.");
         }},
    };
    return scanArguments<Draft>(rest, flags, "Unknown messages-list argument: ");
}

BrokerCommand parseMessagesSend(Arguments rest) {
    struct Draft {
        Text phone, message;
    };
    static constexpr ScannedFlag<Draft> flags[] = {
        {"--phone", &Draft::phone},
        {"--message", &Draft::message},
    };
    auto draft = scanArguments<Draft>(rest, flags, "Unknown messages-send argument: ");
    command::MessagesSend command;
    command.phone = requiredText(
        draft.phone, "Missing phone number. Use `messages-send --phone +4917612345678 --message \"hello\"`");
    command.message = requiredText(draft.message, "Missing message text for messages-send.");
    return command;
}

BrokerCommand parseMailList(Arguments rest) {
    using Draft = command::MailList;
    static constexpr ScannedFlag<Draft> flags[] = {
        {"--view",
         +[](Draft& draft, const std::string* value) {
             draft.view = wordOf<CapabilityMailView>(value, "Invalid Mail view. Use `unread`, `flagged`, or `recent`.");
         }},
        {"--limit",
         +[](Draft& draft, const std::string* value) {
             draft.limit = limitOf(value, "Invalid Mail limit. Use `mail-list --view unread --limit 10`.");
         }},
    };
    return scanArguments<Draft>(rest, flags, "Unknown mail-list argument: ");
}

BrokerCommand parseMailCheckFollowup(Arguments rest) {
    using Draft = command::MailCheckFollowup;
    static constexpr ScannedFlag<Draft> flags[] = {
        {"--source-id", &Draft::sourceId},
        {"--message-id", &Draft::messageId},
        {"--sender", &Draft::sender},
        {"--subject", &Draft::subject},
        {"--since", &Draft::sinceAt},
        {"--limit",
         +[](Draft& draft, const std::string* value) {
             draft.limit =
                 limitOf(value, "Invalid Mail follow-up limit. Use `mail-check-followup --subject \"Subject\" --since "
                                "2026-06-03T09:00:00Z --limit 20`.");
         }},
    };
    auto draft = scanArguments<Draft>(rest, flags, "Unknown mail-check-followup argument: ");
    const auto given = [](const Text& text) { return text && !isBlank(*text); };
    if (!given(draft.subject) && !given(draft.sender))
        throw UsageError("mail-check-followup requires --subject or --sender.");
    return draft;
}

BrokerCommand parseClick(Arguments rest) {
    struct Draft {
        std::optional<double> x, y;
        CapabilityMouseButton button = CapabilityMouseButton::left;
    };
    static constexpr ScannedFlag<Draft> flags[] = {
        {"--x",
         +[](Draft& draft, const std::string* value) {
             draft.x = coordinateOf(value, "Invalid --x value. Use a normalized decimal between 0 and 1.");
         }},
        {"--y",
         +[](Draft& draft, const std::string* value) {
             draft.y = coordinateOf(value, "Invalid --y value. Use a normalized decimal between 0 and 1.");
         }},
        {"--button",
         +[](Draft& draft, const std::string* value) {
             draft.button = wordOf<CapabilityMouseButton>(value, "Invalid --button value. Use `left` or `right`.");
         }},
    };
    const auto draft = scanArguments<Draft>(rest, flags, "Unknown click argument: ");
    if (!draft.x || !draft.y)
        throw UsageError("Missing click coordinates. Use `click --x 0.5 --y 0.5 [--button left|right]`");
    return command::Click{.normalizedX = *draft.x, .normalizedY = *draft.y, .button = draft.button};
}

} // namespace vesk
