#include "VeskCapabilityBroker/CommandLineParser.hpp"
#include "tests/broker/Parsing.hpp"

namespace vesk {
namespace {

using namespace command;
using test::expectAllParse;
using test::ParserCase;

const std::string missingCommand =
    "Missing command. Use one of: status, active-app, focused-element, activate-app, calendar-list, calendar-today, "
    "calendar-date, calendar-calendar, calendar-next, calendar-snapshot, calendar-create, calendar-respond-invite, "
    "todo-list, todo-stats, todo-add, todo-complete, todo-reopen, todo-delete, todo-update, messages-list, "
    "messages-send, mail-list, request <capability>, open-settings <capability>, screenshot, media-compose, click, "
    "type, key";

const std::string unknownCapability =
    "Unknown capability. Use one of: full_disk_access, screen_recording, system_audio, microphone, accessibility, "
    "calendar, reminders, contacts, messages, mail, icloud";

const std::string invalidKey = "Invalid or missing key. Use one of: return, tab, escape, space, delete, left, right, "
                               "up, down, or `enter` as an alias for `return`";

TEST(CommandLine, RecognisesTheCommandByItsExactWord) {
    expectAllParse({
        {{}, missingCommand},
        {{"--help"}, "Unknown command: --help"},
        {{""}, "Unknown command: "},
        {{"Status"}, "Unknown command: Status"},
        {{"stat"}, "Unknown command: stat"},
        {{" status"}, "Unknown command:  status"},
    });
}

TEST(CommandLine, CommandsWithoutPayloadIgnoreWhatFollows) {
    const std::pair<std::string, BrokerCommand> cases[] = {
        {"status", Status{}},
        {"active-app", ActiveApp{}},
        {"focused-element", FocusedElement{}},
        {"calendar-list", CalendarList{}},
        {"calendar-today", CalendarToday{}},
        {"calendar-next", CalendarNext{}},
        {"todo-stats", TodoStats{}},
    };
    for (const auto& [word, command] : cases) expectAllParse({{{word}, command}, {{word, "--bogus", "x"}, command}});
}

struct SlotCase {
    std::string word, flag, message;
    BrokerCommand (*command)(std::string value);
};

const SlotCase slotCases[] = {
    {"activate-app", "--app", "Missing app target. Use `activate-app --app Codex` or pass a bundle id.",
     [](std::string v) -> BrokerCommand { return ActivateApp{std::move(v)}; }},
    {"calendar-date", "--date", "Missing date. Use `calendar-date --date 2026-04-26`",
     [](std::string v) -> BrokerCommand { return CalendarDate{std::move(v)}; }},
    {"calendar-calendar", "--name", "Missing calendar name. Use `calendar-calendar --name Work`",
     [](std::string v) -> BrokerCommand { return CalendarNamed{std::move(v)}; }},
    {"todo-complete", "--id", "Missing todo id. Use `todo-complete --id <todo-id>`",
     [](std::string v) -> BrokerCommand { return TodoComplete{std::move(v)}; }},
    {"todo-reopen", "--id", "Missing todo id. Use `todo-reopen --id <todo-id>`",
     [](std::string v) -> BrokerCommand { return TodoReopen{std::move(v)}; }},
    {"todo-delete", "--id", "Missing todo id. Use `todo-delete --id <todo-id>`",
     [](std::string v) -> BrokerCommand { return TodoDelete{std::move(v)}; }},
    {"contacts-search", "--query", "Missing contacts query. Use `contacts-search --query Dana`",
     [](std::string v) -> BrokerCommand { return ContactsSearch{std::move(v)}; }},
    {"contacts-save", "--request",
     "Missing contact save request. Use `contacts-save --request /absolute/path/contact.json`",
     [](std::string v) -> BrokerCommand { return ContactsSave{std::move(v)}; }},
    {"screenshot", "--output", "Missing screenshot output path. Use `screenshot --output /absolute/path.png`",
     [](std::string v) -> BrokerCommand { return Screenshot{std::move(v)}; }},
    {"media-compose", "--request",
     "Missing media compose request path. Use `media-compose --request /absolute/path/request.json`",
     [](std::string v) -> BrokerCommand { return MediaCompose{std::move(v)}; }},
    {"pdf-render-html", "--request",
     "Missing PDF render request path. Use `pdf-render-html --request /absolute/path/request.json`",
     [](std::string v) -> BrokerCommand { return PdfRenderHTML{std::move(v)}; }},
    {"type", "--text", "Missing type text. Use `type --text \"hello\"`",
     [](std::string v) -> BrokerCommand { return Type{std::move(v)}; }},
};

TEST(CommandLine, FixedSlotCommands) {
    for (const auto& [word, flag, message, command] : slotCases) {
        const auto blank = [&, command = command, message = message](std::string value) {
            return word == "type" ? std::variant<BrokerCommand, std::string>(command(std::move(value))) : message;
        };
        expectAllParse({
            {{word}, message},
            {{word, "Safari"}, message},
            {{word, "--other", "Safari"}, message},
            {{word, "x", flag, "Safari"}, message},
            {{word, flag}, message},
            {{word, flag, ""}, message},
            {{word, flag, "  "}, blank("  ")},
            {{word, flag, "\n\t\u00A0\u2003"}, blank("\n\t\u00A0\u2003")},
            {{word, flag, "abc"}, command("abc")},
            {{word, flag, " 2026-04-26 "}, command(" 2026-04-26 ")},
            {{word, flag, "abc", "extra"}, command("abc")},
            {{word, flag, flag}, command(flag)},
            {{word, flag, "\xFF"}, command("\xFF")},
        });
    }
}

TEST(CommandLine, RequestAndOpenSettingsTakeACapability) {
    for (const auto kind : allCapabilityKinds) {
        const std::string id(rawValue(kind));
        expectAllParse({
            {{"request", id}, Request{kind}},
            {{"open-settings", id}, OpenSettings{kind}},
            {{"request", id, "--bogus"}, Request{kind}},
            {{"open-settings", id, "--bogus"}, OpenSettings{kind}},
        });
    }
    for (const std::string word : {"request", "open-settings"})
        expectAllParse({
            {{word}, unknownCapability},
            {{word, "calendars"}, unknownCapability},
            {{word, "Calendar"}, unknownCapability},
            {{word, ""}, unknownCapability},
            {{word, "--kind", "calendar"}, unknownCapability},
        });
}

TEST(CommandLine, EveryKeyAndItsAlias) {
    for (const auto& [key, raw] : rawValueTable<SupportedControlKey>)
        expectAllParse({{{"key", "--key", std::string(raw)}, Key{key, {}}}});
    expectAllParse({{{"key", "--key", "enter"}, Key{SupportedControlKey::return_, {}}}});
    for (const std::string value : {"Enter", "RETURN", "", " tab", "f1"})
        expectAllParse({{{"key", "--key", value}, invalidKey}});
}

TEST(CommandLine, ShapeOfKey) {
    using enum CapabilityKeyModifier;
    const auto tab = [](std::vector<CapabilityKeyModifier> modifiers) {
        return Key{SupportedControlKey::tab, std::move(modifiers)};
    };
    expectAllParse({
        {{"key"}, invalidKey},
        {{"key", "tab"}, invalidKey},
        {{"key", "--modifiers", "shift", "--key", "tab"}, invalidKey},
        {{"key", "--key"}, invalidKey},
        {{"key", "--key", "tab", "--mods", "shift"}, "Unknown key argument: --mods"},
        {{"key", "--key", "tab", ""}, "Unknown key argument: "},
        {{"key", "--key", "tab", "--modifiers"}, "Missing modifier list after --modifiers"},
        {{"key", "--key", "tab", "--modifiers", "shift"}, tab({shift})},
        {{"key", "--key", "tab", "--modifiers", "shift", "extra"}, tab({shift})},
        {{"key", "--key", "tab", "--modifiers", "shift, command,shift"}, tab({shift, command})},
        {{"key", "--key", "tab", "--modifiers", ",, ,"}, tab({})},
        {{"key", "--key", "tab", "--modifiers", ""}, tab({})},
        {{"key", "--key", "tab", "--modifiers", "control,option,shift,command"},
         tab({control, option, shift, command})},
        {{"key", "--key", "tab", "--modifiers", "Shift"},
         "Unknown modifier: Shift. Use any of: command, shift, option, control"},
        {{"key", "--key", "tab", "--modifiers", "shift, cmd ,x"},
         "Unknown modifier: cmd. Use any of: command, shift, option, control"},
        {{"key", "--key", "bogus", "--modifiers", "Shift"}, invalidKey},
    });
}

TEST(CommandLine, WordsStandInTheOrderOfTheCommands) {
    EXPECT_EQ(commandWords.size(), 33U);
    EXPECT_EQ(commandWord(parseCommand(std::vector<std::string>{"request", "mail"})), "request");
    EXPECT_EQ(commandWord(parseCommand(std::vector<std::string>{"calendar-calendar", "--name", "x"})),
              "calendar-calendar");
    EXPECT_EQ(commandWord(Key{}), "key");
}

} // namespace
} // namespace vesk
