#pragma once

#include "VeskSupport/Records.hpp"

#include <optional>
#include <string>
#include <vector>

// The records that the calendar operations return. Times are local ISO 8601 text with an offset.

namespace vesk {

struct CapabilityCalendarDescriptor {
    std::string identifier;
    /// As stored, not trimmed.
    std::string title;
    std::optional<std::string> sourceTitle;
    bool allowsContentModifications = false;

    bool operator==(const CapabilityCalendarDescriptor&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityCalendarDescriptor> =
    recordFields(required("identifier", &CapabilityCalendarDescriptor::identifier),
                 required("title", &CapabilityCalendarDescriptor::title),
                 optional("sourceTitle", &CapabilityCalendarDescriptor::sourceTitle),
                 required("allowsContentModifications", &CapabilityCalendarDescriptor::allowsContentModifications));

struct CapabilityCalendarParticipant {
    std::optional<std::string> name;
    std::optional<std::string> url;
    /// "pending", "accepted", "declined", "tentative", "delegated", "completed", "in_process" or "unknown".
    std::string status;
    /// "required", "optional", "chair", "non_participant" or "unknown".
    std::string role;
    /// "person", "room", "resource", "group" or "unknown".
    std::string type;
    bool isCurrentUser = false;

    bool operator==(const CapabilityCalendarParticipant&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityCalendarParticipant> = recordFields(
    optional("name", &CapabilityCalendarParticipant::name), optional("url", &CapabilityCalendarParticipant::url),
    required("status", &CapabilityCalendarParticipant::status), required("role", &CapabilityCalendarParticipant::role),
    required("type", &CapabilityCalendarParticipant::type),
    required("isCurrentUser", &CapabilityCalendarParticipant::isCurrentUser));

/// One occurrence of an event.
struct CapabilityCalendarEvent {
    /// Shared by the occurrences of a recurring event; empty where the store gives none.
    std::string identifier;
    /// Names this one occurrence; compared as a whole string, never taken apart.
    std::optional<std::string> sourceKey;
    std::string calendarIdentifier;
    std::string calendarTitle;
    std::optional<std::string> calendarSourceTitle;
    std::optional<bool> calendarAllowsContentModifications;
    std::string title;
    std::string startAt;
    std::string endAt;
    /// The same text as `startAt`.
    std::optional<std::string> occurrenceStartAt;
    bool allDay = false;
    std::optional<std::string> location;
    std::optional<std::string> notes;
    std::optional<std::string> url;
    /// "none", "confirmed", "tentative", "canceled" or "unknown".
    std::optional<std::string> status;
    /// "not_supported", "busy", "free", "tentative", "unavailable" or "unknown".
    std::optional<std::string> availability;
    /// The current user's own status, absent where the user is no attendee.
    std::optional<std::string> participantStatus;
    std::optional<std::string> lastModifiedAt;
    std::optional<bool> hasRecurrenceRules;
    std::optional<CapabilityCalendarParticipant> organizer;
    /// Absent where the store has no attendee list at all.
    std::optional<std::vector<CapabilityCalendarParticipant>> attendees;

    bool operator==(const CapabilityCalendarEvent&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityCalendarEvent> = recordFields(
    required("identifier", &CapabilityCalendarEvent::identifier),
    optional("sourceKey", &CapabilityCalendarEvent::sourceKey),
    required("calendarIdentifier", &CapabilityCalendarEvent::calendarIdentifier),
    required("calendarTitle", &CapabilityCalendarEvent::calendarTitle),
    optional("calendarSourceTitle", &CapabilityCalendarEvent::calendarSourceTitle),
    optional("calendarAllowsContentModifications", &CapabilityCalendarEvent::calendarAllowsContentModifications),
    required("title", &CapabilityCalendarEvent::title), required("startAt", &CapabilityCalendarEvent::startAt),
    required("endAt", &CapabilityCalendarEvent::endAt),
    optional("occurrenceStartAt", &CapabilityCalendarEvent::occurrenceStartAt),
    required("allDay", &CapabilityCalendarEvent::allDay), optional("location", &CapabilityCalendarEvent::location),
    optional("notes", &CapabilityCalendarEvent::notes), optional("url", &CapabilityCalendarEvent::url),
    optional("status", &CapabilityCalendarEvent::status),
    optional("availability", &CapabilityCalendarEvent::availability),
    optional("participantStatus", &CapabilityCalendarEvent::participantStatus),
    optional("lastModifiedAt", &CapabilityCalendarEvent::lastModifiedAt),
    optional("hasRecurrenceRules", &CapabilityCalendarEvent::hasRecurrenceRules),
    optional("organizer", &CapabilityCalendarEvent::organizer),
    optional("attendees", &CapabilityCalendarEvent::attendees));

struct CapabilityCalendarCalendarsResponse {
    std::string brokerPath;
    std::optional<std::string> bundlePath;
    std::vector<CapabilityCalendarDescriptor> calendars;
    std::string detail;

    bool operator==(const CapabilityCalendarCalendarsResponse&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityCalendarCalendarsResponse> =
    recordFields(required("brokerPath", &CapabilityCalendarCalendarsResponse::brokerPath),
                 optional("bundlePath", &CapabilityCalendarCalendarsResponse::bundlePath),
                 required("calendars", &CapabilityCalendarCalendarsResponse::calendars),
                 required("detail", &CapabilityCalendarCalendarsResponse::detail));

struct CapabilityCalendarEventsResponse {
    std::string brokerPath;
    std::optional<std::string> bundlePath;
    /// "today", "date", "calendar" or "next".
    std::string view;
    /// The date as it was asked for; only of the view "date".
    std::optional<std::string> requestedDate;
    /// The stored title of the calendar; only of the view "calendar".
    std::optional<std::string> calendarName;
    std::vector<CapabilityCalendarEvent> events;
    std::string detail;

    bool operator==(const CapabilityCalendarEventsResponse&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityCalendarEventsResponse> =
    recordFields(required("brokerPath", &CapabilityCalendarEventsResponse::brokerPath),
                 optional("bundlePath", &CapabilityCalendarEventsResponse::bundlePath),
                 required("view", &CapabilityCalendarEventsResponse::view),
                 optional("requestedDate", &CapabilityCalendarEventsResponse::requestedDate),
                 optional("calendarName", &CapabilityCalendarEventsResponse::calendarName),
                 required("events", &CapabilityCalendarEventsResponse::events),
                 required("detail", &CapabilityCalendarEventsResponse::detail));

struct CapabilityCalendarSnapshotResponse {
    std::string brokerPath;
    std::optional<std::string> bundlePath;
    std::string startAt;
    std::string endAt;
    /// What the exclusions left, in the store's order.
    std::vector<CapabilityCalendarDescriptor> calendars;
    std::vector<CapabilityCalendarEvent> events;
    std::string detail;

    bool operator==(const CapabilityCalendarSnapshotResponse&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityCalendarSnapshotResponse> =
    recordFields(required("brokerPath", &CapabilityCalendarSnapshotResponse::brokerPath),
                 optional("bundlePath", &CapabilityCalendarSnapshotResponse::bundlePath),
                 required("startAt", &CapabilityCalendarSnapshotResponse::startAt),
                 required("endAt", &CapabilityCalendarSnapshotResponse::endAt),
                 required("calendars", &CapabilityCalendarSnapshotResponse::calendars),
                 required("events", &CapabilityCalendarSnapshotResponse::events),
                 required("detail", &CapabilityCalendarSnapshotResponse::detail));

struct CapabilityCalendarCreateResponse {
    std::string brokerPath;
    std::optional<std::string> bundlePath;
    CapabilityCalendarEvent event;
    std::string detail;

    bool operator==(const CapabilityCalendarCreateResponse&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityCalendarCreateResponse> =
    recordFields(required("brokerPath", &CapabilityCalendarCreateResponse::brokerPath),
                 optional("bundlePath", &CapabilityCalendarCreateResponse::bundlePath),
                 required("event", &CapabilityCalendarCreateResponse::event),
                 required("detail", &CapabilityCalendarCreateResponse::detail));

struct CapabilityCalendarInviteResponse {
    std::string brokerPath;
    std::optional<std::string> bundlePath;
    /// "not_found", "blocked" or "already_set".
    std::string status;
    /// "accepted", "declined", "tentative" or "propose_time".
    std::string requestedResponse;
    /// The proposed times as they were given, trimmed and not read.
    std::optional<std::string> proposedStartAt;
    std::optional<std::string> proposedEndAt;
    std::optional<CapabilityCalendarEvent> event;
    std::optional<std::string> currentParticipantStatus;
    /// "calendar_invite_not_found", "no_current_user_attendee" or "unsupported_native_response_mutation".
    std::optional<std::string> reasonCode;
    std::string detail;

    bool operator==(const CapabilityCalendarInviteResponse&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityCalendarInviteResponse> =
    recordFields(required("brokerPath", &CapabilityCalendarInviteResponse::brokerPath),
                 optional("bundlePath", &CapabilityCalendarInviteResponse::bundlePath),
                 required("status", &CapabilityCalendarInviteResponse::status),
                 required("requestedResponse", &CapabilityCalendarInviteResponse::requestedResponse),
                 optional("proposedStartAt", &CapabilityCalendarInviteResponse::proposedStartAt),
                 optional("proposedEndAt", &CapabilityCalendarInviteResponse::proposedEndAt),
                 optional("event", &CapabilityCalendarInviteResponse::event),
                 optional("currentParticipantStatus", &CapabilityCalendarInviteResponse::currentParticipantStatus),
                 optional("reasonCode", &CapabilityCalendarInviteResponse::reasonCode),
                 required("detail", &CapabilityCalendarInviteResponse::detail));

} // namespace vesk
