#include "VeskShellCore/CalendarInvites.hpp"

#include "VeskPlatform/Clock.hpp"
#include "VeskShellCore/BundleResponse.hpp"
#include "VeskShellCore/CalendarAccess.hpp"
#include "VeskShellCore/CalendarDates.hpp"
#include "VeskShellCore/CalendarOperations.hpp"
#include "VeskShellCore/CalendarPayloads.hpp"
#include "VeskShellCore/CalendarSelection.hpp"
#include "VeskSupport/Text.hpp"

#include <algorithm>
#include <array>

namespace vesk::VeskCalendarOperations {
namespace {

struct Window {
    Instant from, to;
};

Window searchWindow(Platform& platform, const std::optional<std::string>& startAt, const LocalCalendar& calendar) {
    if (startAt) {
        const Instant start = parseDateTime(*startAt, calendar);
        return {calendar.addDays(start, -1), calendar.addDays(start, 1)};
    }
    const Instant now = platform.clock().now();
    return {calendar.addDays(now, -7), calendar.addDays(now, 31)};
}

bool answersQuery(const CalendarEvent& event, const InviteQuery& query, const LocalCalendar& calendar) {
    if (query.sourceKey)
        return calendarSourceKey(event, event.identifier, calendar.isoText(event.start)) == *query.sourceKey;
    return query.title && normalizeComparableTitle(normalizedTitle(event)) == normalizeComparableTitle(*query.title);
}

void describeMissingInvite(CapabilityCalendarInviteResponse& response) {
    response.status = "not_found";
    response.reasonCode = "calendar_invite_not_found";
    response.detail = "Vesk could not find the requested Calendar invite in Apple Calendar.";
}

void describeFoundInvite(CapabilityCalendarInviteResponse& response, const CalendarEvent& event,
                         const LocalCalendar& calendar) {
    response.event = calendarEventPayload(event, calendar);
    response.currentParticipantStatus = response.event->participantStatus;
    if (!response.currentParticipantStatus) {
        response.status = "blocked";
        response.reasonCode = "no_current_user_attendee";
        response.detail = "Vesk found the event, but Apple Calendar does not expose a current-user attendee response "
                          "to change.";
    } else if (*response.currentParticipantStatus == response.requestedResponse) {
        response.status = "already_set";
        response.detail = "The Calendar invite already has the requested response status.";
    } else {
        response.status = "blocked";
        response.reasonCode = "unsupported_native_response_mutation";
        response.detail = "Apple EventKit and Calendar scripting expose invite response status as read-only to Vesk, "
                          "so Vesk did not change the invite.";
    }
}

} // namespace

std::string normalizeInviteResponse(const std::string& response) {
    static constexpr std::array<std::pair<std::string_view, const char*>, 12> words{{{"accept", "accepted"},
                                                                                     {"accepted", "accepted"},
                                                                                     {"yes", "accepted"},
                                                                                     {"decline", "declined"},
                                                                                     {"declined", "declined"},
                                                                                     {"no", "declined"},
                                                                                     {"tentative", "tentative"},
                                                                                     {"maybe", "tentative"},
                                                                                     {"propose", "propose_time"},
                                                                                     {"propose_time", "propose_time"},
                                                                                     {"suggest", "propose_time"},
                                                                                     {"suggest_time", "propose_time"}}};
    std::string text = lowercased(trimmed(response));
    std::ranges::replace(text, '-', '_');
    std::ranges::replace(text, ' ', '_');
    for (const auto& [word, meaning] : words)
        if (word == text) return meaning;
    throw CalendarError(CalendarError::Code::argumentInvalid,
                        "Unsupported invite response. Use accepted, declined, tentative, or propose_time.");
}

std::string normalizeComparableTitle(const std::string& title) {
    return joined(alphanumericRuns(lowercased(trimmed(title))), " ");
}

std::optional<CalendarEvent> findEventForInviteResponse(Platform& platform, const InviteQuery& query,
                                                        const LocalCalendar& calendar) {
    const auto store = platform.openEventStore();
    if (query.eventIdentifier)
        if (auto event = store->event(*query.eventIdentifier)) return event;
    const Window window = searchWindow(platform, query.startAt, calendar);
    std::vector<CalendarEvent> events = fetchEvents(*store, eligibleCalendars(*store), window.from, window.to);
    const auto found =
        std::ranges::find_if(events, [&](const CalendarEvent& event) { return answersQuery(event, query, calendar); });
    if (found == events.end()) return std::nullopt;
    return std::move(*found);
}

Task<CapabilityCalendarInviteResponse>
respondToInvite(Platform& platform, std::string response, std::optional<std::string> eventIdentifier,
                std::optional<std::string> sourceKey, std::optional<std::string> title,
                std::optional<std::string> startAt, std::optional<std::string> proposedStartAt,
                std::optional<std::string> proposedEndAt, const Bundle& bundle) {
    auto result = responseOf<CapabilityCalendarInviteResponse>(bundle);
    result.requestedResponse = normalizeInviteResponse(response);
    const InviteQuery query{trimmedOrAbsent(eventIdentifier), trimmedOrAbsent(sourceKey), trimmedOrAbsent(title),
                            trimmedOrAbsent(startAt)};
    if (!query.eventIdentifier && !query.sourceKey && !query.title)
        throw CalendarError(CalendarError::Code::argumentMissing,
                            "Calendar invite response needs an event id, source key, or title to identify the "
                            "invite.");
    co_await ensureCalendarAccess(platform);
    const LocalCalendar calendar(platform.localeSettings().timeZone());
    const auto event = findEventForInviteResponse(platform, query, calendar);
    result.proposedStartAt = trimmedOrAbsent(proposedStartAt);
    result.proposedEndAt = trimmedOrAbsent(proposedEndAt);
    if (event)
        describeFoundInvite(result, *event, calendar);
    else
        describeMissingInvite(result);
    co_return result;
}

} // namespace vesk::VeskCalendarOperations
