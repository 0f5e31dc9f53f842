#pragma once

#include "VeskShellCore/CapabilityModels.hpp"
#include "VeskShellCore/ControlKeys.hpp"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace vesk {

/// One type per command word. Text is verbatim as it stood on the command line.
namespace command {

// clang-format off
struct Status { bool operator==(const Status&) const = default; };
struct ActiveApp { bool operator==(const ActiveApp&) const = default; };
struct FocusedElement { bool operator==(const FocusedElement&) const = default; };
struct ActivateApp { std::string nameOrBundle; bool operator==(const ActivateApp&) const = default; };
struct CalendarList { bool operator==(const CalendarList&) const = default; };
struct CalendarToday { bool operator==(const CalendarToday&) const = default; };
struct CalendarDate { std::string date; bool operator==(const CalendarDate&) const = default; };
struct CalendarNamed { std::string name; bool operator==(const CalendarNamed&) const = default; };
struct CalendarNext { bool operator==(const CalendarNext&) const = default; };
struct TodoList { CapabilityTodoView view = CapabilityTodoView::open; bool operator==(const TodoList&) const = default; };
struct TodoStats { bool operator==(const TodoStats&) const = default; };
struct TodoComplete { std::string id; bool operator==(const TodoComplete&) const = default; };
struct TodoReopen { std::string id; bool operator==(const TodoReopen&) const = default; };
struct TodoDelete { std::string id; bool operator==(const TodoDelete&) const = default; };
struct ContactsSearch { std::string query; bool operator==(const ContactsSearch&) const = default; };
struct ContactsSave { std::string requestPath; bool operator==(const ContactsSave&) const = default; };
struct MessagesList { std::int64_t limit = 20; bool operator==(const MessagesList&) const = default; };
struct Request { CapabilityKind kind{}; bool operator==(const Request&) const = default; };
struct OpenSettings { CapabilityKind kind{}; bool operator==(const OpenSettings&) const = default; };
struct Screenshot { std::string outputPath; bool operator==(const Screenshot&) const = default; };
struct MediaCompose { std::string requestPath; bool operator==(const MediaCompose&) const = default; };
struct PdfRenderHTML { std::string requestPath; bool operator==(const PdfRenderHTML&) const = default; };
struct Type { std::string text; bool operator==(const Type&) const = default; };
// clang-format on

struct CalendarSnapshot {
    std::string startAt, endAt;
    std::vector<std::string> excludeCalendarIdentifiers, excludeCalendarNames;
    bool operator==(const CalendarSnapshot&) const = default;
};

struct CalendarCreate {
    std::string calendarName, title, startAt;
    std::optional<std::string> endAt;
    bool allDay = false;
    std::optional<std::string> location, notes;
    bool operator==(const CalendarCreate&) const = default;
};

struct CalendarRespondInvite {
    std::string response;
    std::optional<std::string> eventIdentifier, sourceKey, title, startAt, proposedStartAt, proposedEndAt;
    bool operator==(const CalendarRespondInvite&) const = default;
};

struct TodoAdd {
    std::string title;
    std::optional<std::string> notes, due;
    bool operator==(const TodoAdd&) const = default;
};

struct TodoUpdate {
    std::string id;
    std::optional<std::string> title, notes, due;
    bool clearDue = false;
    bool operator==(const TodoUpdate&) const = default;
};

struct MessagesSend {
    std::string phone, message;
    bool operator==(const MessagesSend&) const = default;
};

struct MailList {
    CapabilityMailView view = CapabilityMailView::unread;
    std::int64_t limit = 10;
    bool operator==(const MailList&) const = default;
};

struct MailCheckFollowup {
    std::optional<std::string> sourceId, messageId, sender, subject, sinceAt;
    std::int64_t limit = 20;
    bool operator==(const MailCheckFollowup&) const = default;
};

/// Coordinates are fractions of the screen, 0 to 1.
struct Click {
    double normalizedX = 0, normalizedY = 0;
    CapabilityMouseButton button = CapabilityMouseButton::left;
    bool operator==(const Click&) const = default;
};

struct Key {
    SupportedControlKey key{};
    std::vector<CapabilityKeyModifier> modifiers;
    bool operator==(const Key&) const = default;
};

} // namespace command

/// The one command of a run; the alternatives stand in the order of `commandWords`.
using BrokerCommand = std::variant<
    command::Status, command::ActiveApp, command::FocusedElement, command::ActivateApp, command::CalendarList,
    command::CalendarToday, command::CalendarDate, command::CalendarNamed, command::CalendarNext,
    command::CalendarSnapshot, command::CalendarCreate, command::CalendarRespondInvite, command::TodoList,
    command::TodoStats, command::TodoAdd, command::TodoComplete, command::TodoReopen, command::TodoDelete,
    command::TodoUpdate, command::ContactsSearch, command::ContactsSave, command::MessagesList, command::MessagesSend,
    command::MailList, command::MailCheckFollowup, command::Request, command::OpenSettings, command::Screenshot,
    command::MediaCompose, command::PdfRenderHTML, command::Click, command::Type, command::Key>;

inline constexpr auto commandWords = std::to_array<std::string_view>({"status",
                                                                      "active-app",
                                                                      "focused-element",
                                                                      "activate-app",
                                                                      "calendar-list",
                                                                      "calendar-today",
                                                                      "calendar-date",
                                                                      "calendar-calendar",
                                                                      "calendar-next",
                                                                      "calendar-snapshot",
                                                                      "calendar-create",
                                                                      "calendar-respond-invite",
                                                                      "todo-list",
                                                                      "todo-stats",
                                                                      "todo-add",
                                                                      "todo-complete",
                                                                      "todo-reopen",
                                                                      "todo-delete",
                                                                      "todo-update",
                                                                      "contacts-search",
                                                                      "contacts-save",
                                                                      "messages-list",
                                                                      "messages-send",
                                                                      "mail-list",
                                                                      "mail-check-followup",
                                                                      "request",
                                                                      "open-settings",
                                                                      "screenshot",
                                                                      "media-compose",
                                                                      "pdf-render-html",
                                                                      "click",
                                                                      "type",
                                                                      "key"});
static_assert(commandWords.size() == std::variant_size_v<BrokerCommand>);

constexpr std::string_view commandWord(const BrokerCommand& command) { return commandWords[command.index()]; }

} // namespace vesk
