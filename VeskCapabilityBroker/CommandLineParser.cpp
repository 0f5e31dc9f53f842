#include "VeskCapabilityBroker/CommandLineParser.hpp"

#include "VeskCapabilityBroker/ScanningCommands.hpp"
#include "VeskSupport/RawValueList.hpp"
#include "VeskSupport/Text.hpp"

#include <algorithm>

namespace vesk {
namespace {

// ---- Commands without a payload

template <class Command> BrokerCommand parsePlain(Arguments) { return Command{}; }

// ---- Commands with exactly one flag, right behind their word

struct FixedSlot {
    std::string_view flag;
    /// The one message for whatever is wrong.
    std::string_view message;
    bool blankIsAValue = false;
};

constexpr FixedSlot activateAppSlot{"--app", "Missing app target. Use `activate-app --app Codex` or pass a bundle id."};
constexpr FixedSlot calendarDateSlot{"--date", "Missing date. Use `calendar-date --date 2026-04-26`"};
constexpr FixedSlot calendarNamedSlot{"--name", "Missing calendar name. Use `calendar-calendar --name Work`"};
constexpr FixedSlot todoCompleteSlot{"--id", "Missing todo id. Use `todo-complete --id <todo-id>`"};
constexpr FixedSlot todoReopenSlot{"--id", "Missing todo id. Use `todo-reopen --id <todo-id>`"};
constexpr FixedSlot todoDeleteSlot{"--id", "Missing todo id. Use `todo-delete --id <todo-id>`"};
constexpr FixedSlot contactsSearchSlot{"--query", "Missing contacts query. Use `contacts-search --query Dana`"};
constexpr FixedSlot contactsSaveSlot{
    "--request", "Missing contact save request. Use `contacts-save --request /absolute/path/contact.json`"};
constexpr FixedSlot screenshotSlot{"--output",
                                   "Missing screenshot output path. Use `screenshot --output /absolute/path.png`"};
constexpr FixedSlot mediaComposeSlot{
    "--request", "Missing media compose request path. Use `media-compose --request /absolute/path/request.json`"};
constexpr FixedSlot pdfRenderSlot{
    "--request", "Missing PDF render request path. Use `pdf-render-html --request /absolute/path/request.json`"};
constexpr FixedSlot typeSlot{"--text", "Missing type text. Use `type --text \"hello\"`", true};

const std::string& slotValue(const FixedSlot& slot, Arguments rest) {
    const bool given = rest.size() >= 2 && rest[0] == slot.flag;
    if (!given || (slot.blankIsAValue ? rest[1].empty() : isBlank(rest[1])))
        throw UsageError(std::string(slot.message));
    return rest[1];
}

template <class Command, const FixedSlot& slot> BrokerCommand parseSlot(Arguments rest) {
    return Command{slotValue(slot, rest)};
}

// ---- Capabilities

template <class Command> BrokerCommand parseCapability(Arguments rest) {
    const auto kind = rest.empty() ? std::nullopt : fromRawValue<CapabilityKind>(rest[0]);
    if (!kind) throw UsageError("Unknown capability. Use one of: " + joinedRawValues<CapabilityKind>());
    return Command{*kind};
}

// ---- Keys

BrokerCommand parseKey(Arguments rest) {
    const bool given = rest.size() >= 2 && rest[0] == "--key";
    const auto key = given ? parseSupportedControlKey(rest[1]) : std::nullopt;
    if (!key) throw UsageError("Invalid or missing key. Use one of: " + supportedControlKeyList());
    command::Key command{.key = *key, .modifiers = {}};
    if (rest.size() == 2) return command;
    if (rest[2] != "--modifiers") throw UsageError("Unknown key argument: " + rest[2]);
    if (rest.size() == 3) throw UsageError("Missing modifier list after --modifiers");
    command.modifiers = parseModifiers(rest[3]);
    return command;
}

// ---- All commands

struct CommandRow {
    std::string_view word;
    BrokerCommand (*parse)(Arguments rest);
    /// How the message for a missing command shows it; empty for the few that it leaves out.
    std::string_view listedAs;

    constexpr CommandRow(std::string_view w, BrokerCommand (*p)(Arguments)) : CommandRow(w, p, w) {}
    constexpr CommandRow(std::string_view w, BrokerCommand (*p)(Arguments), std::string_view l)
        : word(w), parse(p), listedAs(l) {}
};

constexpr std::string_view notListed{};

constexpr auto commandRows = std::to_array<CommandRow>({
    {"status", parsePlain<command::Status>},
    {"active-app", parsePlain<command::ActiveApp>},
    {"focused-element", parsePlain<command::FocusedElement>},
    {"activate-app", parseSlot<command::ActivateApp, activateAppSlot>},
    {"calendar-list", parsePlain<command::CalendarList>},
    {"calendar-today", parsePlain<command::CalendarToday>},
    {"calendar-date", parseSlot<command::CalendarDate, calendarDateSlot>},
    {"calendar-calendar", parseSlot<command::CalendarNamed, calendarNamedSlot>},
    {"calendar-next", parsePlain<command::CalendarNext>},
    {"calendar-snapshot", parseCalendarSnapshot},
    {"calendar-create", parseCalendarCreate},
    {"calendar-respond-invite", parseCalendarRespondInvite},
    {"todo-list", parseTodoList},
    {"todo-stats", parsePlain<command::TodoStats>},
    {"todo-add", parseTodoAdd},
    {"todo-complete", parseSlot<command::TodoComplete, todoCompleteSlot>},
    {"todo-reopen", parseSlot<command::TodoReopen, todoReopenSlot>},
    {"todo-delete", parseSlot<command::TodoDelete, todoDeleteSlot>},
    {"todo-update", parseTodoUpdate},
    {"contacts-search", parseSlot<command::ContactsSearch, contactsSearchSlot>, notListed},
    {"contacts-save", parseSlot<command::ContactsSave, contactsSaveSlot>, notListed},
    {"messages-list", parseMessagesList},
    {"messages-send", parseMessagesSend},
    {"mail-list", parseMailList},
    {"mail-check-followup", parseMailCheckFollowup, notListed},
    {"request", parseCapability<command::Request>, "request <capability>"},
    {"open-settings", parseCapability<command::OpenSettings>, "open-settings <capability>"},
    {"screenshot", parseSlot<command::Screenshot, screenshotSlot>},
    {"media-compose", parseSlot<command::MediaCompose, mediaComposeSlot>},
    {"pdf-render-html", parseSlot<command::PdfRenderHTML, pdfRenderSlot>, notListed},
    {"click", parseClick},
    {"type", parseSlot<command::Type, typeSlot>},
    {"key", parseKey},
});

static_assert(std::equal(commandRows.begin(), commandRows.end(), commandWords.begin(), commandWords.end(),
                         [](const CommandRow& row, std::string_view word) { return row.word == word; }));

std::string missingCommandMessage() {
    std::string words;
    for (const CommandRow& row : commandRows) {
        if (row.listedAs.empty()) continue;
        if (!words.empty()) words += ", ";
        words += row.listedAs;
    }
    return "Missing command. Use one of: " + words;
}

} // namespace

BrokerCommand parseCommand(Arguments arguments) {
    if (arguments.empty()) throw UsageError(missingCommandMessage());
    for (const CommandRow& row : commandRows)
        if (row.word == arguments[0]) return row.parse(arguments.subspan(1));
    throw UsageError("Unknown command: " + arguments[0]);
}

std::vector<CapabilityKeyModifier> parseModifiers(std::string_view value) {
    std::vector<CapabilityKeyModifier> modifiers;
    for (const std::string& piece : split(value, ',')) {
        const std::string_view word = trimmed(piece);
        if (word.empty()) continue;
        const auto modifier = fromRawValue<CapabilityKeyModifier>(word);
        if (!modifier)
            throw UsageError("Unknown modifier: " + std::string(word)
                             + ". Use any of: " + joinedRawValues<CapabilityKeyModifier>());
        if (std::find(modifiers.begin(), modifiers.end(), *modifier) == modifiers.end()) modifiers.push_back(*modifier);
    }
    return modifiers;
}

} // namespace vesk
