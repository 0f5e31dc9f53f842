#include "VeskShellCore/CalendarOperations.hpp"

#include "VeskPlatform/Clock.hpp"
#include "VeskShellCore/BundleResponse.hpp"
#include "VeskShellCore/CalendarAccess.hpp"
#include "VeskShellCore/CalendarDates.hpp"
#include "VeskShellCore/CalendarPayloads.hpp"
#include "VeskShellCore/CalendarSelection.hpp"
#include "VeskSupport/Text.hpp"

#include <algorithm>

namespace vesk::VeskCalendarOperations {
namespace {

using namespace std::chrono_literals;

LocalCalendar currentCalendar(Platform& platform) { return LocalCalendar(platform.localeSettings().timeZone()); }

std::string requiredArgument(const std::string& text, const char* failure) {
    const std::string_view kept = trimmed(text);
    if (kept.empty()) throw CalendarError(CalendarError::Code::argumentMissing, failure);
    return std::string(kept);
}

EventCalendar requiredCalendar(Platform& platform, EventStore& store, const std::string& name) {
    const std::vector<EventCalendar> calendars = eligibleCalendars(store);
    const auto calendar = findCalendar(name, calendars, platform.localeSettings());
    if (!calendar) throw calendarNotFoundError(name, calendars);
    return *calendar;
}

std::vector<CapabilityCalendarDescriptor> descriptors(const std::vector<EventCalendar>& calendars) {
    std::vector<CapabilityCalendarDescriptor> result;
    std::ranges::transform(calendars, std::back_inserter(result), calendarDescriptorPayload);
    return result;
}

std::vector<CapabilityCalendarEvent> payloads(const std::vector<CalendarEvent>& events, const LocalCalendar& calendar) {
    std::vector<CapabilityCalendarEvent> result;
    result.reserve(events.size());
    for (const CalendarEvent& event : events) result.push_back(calendarEventPayload(event, calendar));
    return result;
}

/// The events of the calendar day of `reference`.
std::vector<CapabilityCalendarEvent> dayPayloads(EventStore& store, const std::vector<EventCalendar>& calendars,
                                                 Instant reference, const LocalCalendar& calendar) {
    const Instant start = calendar.startOfDay(reference);
    return payloads(fetchEvents(store, calendars, start, calendar.addDays(start, 1)), calendar);
}

/// The first event that ends later than now, of those that begin before 365 days have passed.
///
/// The store expands each occurrence of a window, and the answer nearly always begins within days, so the windows
/// widen until one answers. They all begin now, so the events of a narrower one are those of the widest that begin
/// before the narrower one's end. As events come by their start, these are the widest one's first events, in the same
/// order: the first of them that has not ended is the first of all.
std::optional<CalendarEvent> firstUnfinishedEvent(Platform& platform, const LocalCalendar& calendar) {
    const auto store = platform.openEventStore();
    const std::vector<EventCalendar> calendars = eligibleCalendars(*store);
    const Instant now = platform.clock().now();
    for (const int days : {1, 8, 64, 365}) {
        std::vector<CalendarEvent> events = fetchEvents(*store, calendars, now, calendar.addDays(now, days));
        const auto next = std::ranges::find_if(events, [&](const CalendarEvent& event) { return event.end > now; });
        if (next != events.end()) return std::move(*next);
    }
    return std::nullopt;
}

void checkSnapshotRange(Instant start, Instant end) {
    constexpr auto longest = 2'678'400s;
    if (end <= start)
        throw CalendarError(CalendarError::Code::argumentInvalid,
                            "Calendar snapshot end time must be after the start time.");
    if (end - start > longest)
        throw CalendarError(CalendarError::Code::argumentInvalid,
                            "Calendar snapshots are bounded to 31 days. Request a smaller range.");
}

} // namespace

Task<CapabilityCalendarCalendarsResponse> listCalendars(Platform& platform, const Bundle& bundle) {
    co_await ensureCalendarAccess(platform);
    std::vector<EventCalendar> calendars = eligibleCalendars(*platform.openEventStore());
    const CaseInsensitiveCollator collator(platform.localeSettings().locale());
    std::ranges::stable_sort(calendars, [&](const EventCalendar& a, const EventCalendar& b) {
        return collator.compare(a.title, b.title) < 0;
    });
    auto response = responseOf<CapabilityCalendarCalendarsResponse>(bundle);
    response.calendars = descriptors(calendars);
    response.detail = calendars.empty() ? "No writable or readable calendars are currently available."
                                        : "Listed available Apple Calendar calendars.";
    co_return response;
}

Task<CapabilityCalendarEventsResponse> listToday(Platform& platform, const Bundle& bundle) {
    co_await ensureCalendarAccess(platform);
    auto response = responseOf<CapabilityCalendarEventsResponse>(bundle);
    response.view = "today";
    const auto store = platform.openEventStore();
    response.events = dayPayloads(*store, eligibleCalendars(*store), platform.clock().now(), currentCalendar(platform));
    response.detail =
        response.events.empty() ? "No events are scheduled for today." : "Listed today's Apple Calendar events.";
    co_return response;
}

Task<CapabilityCalendarEventsResponse> listForDate(Platform& platform, std::string date, const Bundle& bundle) {
    const LocalCalendar calendar = currentCalendar(platform);
    const Instant reference = parseCalendarDate(date, calendar);
    co_await ensureCalendarAccess(platform);
    auto response = responseOf<CapabilityCalendarEventsResponse>(bundle);
    response.view = "date";
    response.requestedDate = date;
    const auto store = platform.openEventStore();
    response.events = dayPayloads(*store, eligibleCalendars(*store), reference, calendar);
    response.detail = response.events.empty() ? "No events are scheduled for " + date + "."
                                              : "Listed Apple Calendar events for the requested date.";
    co_return response;
}

Task<CapabilityCalendarEventsResponse> listCalendarToday(Platform& platform, std::string name, const Bundle& bundle) {
    const std::string wanted = requiredArgument(name, "Calendar name is required.");
    co_await ensureCalendarAccess(platform);
    const auto store = platform.openEventStore();
    const EventCalendar found = requiredCalendar(platform, *store, wanted);
    auto response = responseOf<CapabilityCalendarEventsResponse>(bundle);
    response.view = "calendar";
    response.calendarName = found.title;
    response.events = dayPayloads(*store, {found}, platform.clock().now(), currentCalendar(platform));
    response.detail = response.events.empty() ? "No events are scheduled in " + found.title + " today."
                                              : "Listed today's events for the requested calendar.";
    co_return response;
}

Task<CapabilityCalendarEventsResponse> nextEvent(Platform& platform, const Bundle& bundle) {
    co_await ensureCalendarAccess(platform);
    const LocalCalendar calendar = currentCalendar(platform);
    auto response = responseOf<CapabilityCalendarEventsResponse>(bundle);
    response.view = "next";
    if (const auto event = firstUnfinishedEvent(platform, calendar))
        response.events.push_back(calendarEventPayload(*event, calendar));
    response.detail = response.events.empty() ? "No upcoming events are scheduled."
                                              : "Reported the next upcoming Apple Calendar event.";
    co_return response;
}

Task<CapabilityCalendarSnapshotResponse> snapshotEvents(Platform& platform, std::string startAt, std::string endAt,
                                                        std::vector<std::string> excludeCalendarIdentifiers,
                                                        std::vector<std::string> excludeCalendarNames,
                                                        const Bundle& bundle) {
    const LocalCalendar calendar = currentCalendar(platform);
    const Instant start = parseDateTime(startAt, calendar);
    const Instant end = parseDateTime(endAt, calendar);
    checkSnapshotRange(start, end);
    co_await ensureCalendarAccess(platform);
    const auto store = platform.openEventStore();
    const auto calendars =
        filterExcludedCalendars(eligibleCalendars(*store), excludeCalendarIdentifiers, excludeCalendarNames);
    auto response = responseOf<CapabilityCalendarSnapshotResponse>(bundle);
    response.startAt = calendar.isoText(start);
    response.endAt = calendar.isoText(end);
    response.calendars = descriptors(calendars);
    response.events = payloads(fetchEvents(*store, calendars, start, end), calendar);
    response.detail = response.events.empty() ? "No Apple Calendar events were found in the requested snapshot range."
                                              : "Snapshotted Apple Calendar events in the requested range.";
    co_return response;
}

Task<CapabilityCalendarCreateResponse> createEvent(Platform& platform, std::string calendarName, std::string title,
                                                   std::string startAt, std::optional<std::string> endAt, bool allDay,
                                                   std::optional<std::string> location,
                                                   std::optional<std::string> notes, const Bundle& bundle) {
    NewEvent event;
    const std::string name = requiredArgument(calendarName, "Calendar name is required.");
    event.title = requiredArgument(title, "Event title is required.");
    const LocalCalendar calendar = currentCalendar(platform);
    event.allDay = allDay;
    event.start = allDay ? parseAllDayDateBoundary(startAt, calendar) : parseDateTime(startAt, calendar);
    event.end =
        allDay ? resolveAllDayEndDate(event.start, endAt, calendar) : resolveEndDate(event.start, endAt, calendar);
    event.location = trimmedOrAbsent(location);
    event.notes = trimmedOrAbsent(notes);
    co_await ensureCalendarAccess(platform);
    const auto store = platform.openEventStore();
    event.calendarIdentifier = requiredCalendar(platform, *store, name).identifier;
    auto response = responseOf<CapabilityCalendarCreateResponse>(bundle);
    response.event = calendarEventPayload(store->save(event), calendar);
    response.detail = "Created a new Apple Calendar event.";
    co_return response;
}

} // namespace vesk::VeskCalendarOperations
