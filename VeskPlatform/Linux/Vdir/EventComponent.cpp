#include "VeskPlatform/Linux/Vdir/EventComponent.hpp"

#include "VeskPlatform/Linux/Vdir/IcalReading.hpp"
#include "VeskPlatform/Linux/Vdir/IcsScanner.hpp"
#include "VeskSupport/Text.hpp"

#include <algorithm>
#include <array>
#include <libical/ical.h>

namespace vesk::vdir {
namespace {

using namespace std::chrono;

EventDuration eventDuration(const icaldurationtype& duration) {
    const int sign = duration.is_neg != 0 ? -1 : 1;
    constexpr std::int64_t limit = 400'000; // days, more than a thousand years
    const std::int64_t wholeDays = std::int64_t{duration.weeks} * 7 + duration.days;
    const auto rest = hours(duration.hours) + minutes(duration.minutes) + seconds(duration.seconds);
    return {days(sign * static_cast<int>(std::min(wholeDays, limit))), sign * std::min<seconds>(rest, days(limit))};
}

/// The first property of a kind, and the next ones.
template <class Visit> void forEachProperty(icalcomponent* component, icalproperty_kind kind, Visit visit) {
    for (icalproperty* p = icalcomponent_get_first_property(component, kind); p != nullptr;
         p = icalcomponent_get_next_property(component, kind))
        visit(p);
}

int statusNumber(icalcomponent* component) {
    icalproperty* property = icalcomponent_get_first_property(component, ICAL_STATUS_PROPERTY);
    if (property == nullptr) return 0;
    switch (icalproperty_get_status(property)) {
    case ICAL_STATUS_CONFIRMED: return 1;
    case ICAL_STATUS_TENTATIVE: return 2;
    case ICAL_STATUS_CANCELLED: return 3;
    default: return 0;
    }
}

std::string upperCased(std::string_view text) {
    std::string result(text);
    for (char& c : result)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    return result;
}

template <std::size_t Count> using NumberTable = std::array<std::pair<std::string_view, int>, Count>;

template <std::size_t Count> std::optional<int> numberFor(const NumberTable<Count>& table, std::string_view word) {
    const std::string key = upperCased(trimmed(word));
    for (const auto& [name, number] : table)
        if (name == key) return number;
    return std::nullopt;
}

constexpr NumberTable<4> busyStatuses{{{"FREE", 1}, {"TENTATIVE", 2}, {"OOF", 3}, {"BUSY", 0}}};
constexpr NumberTable<7> participationStatuses{{{"NEEDS-ACTION", 1},
                                                {"ACCEPTED", 2},
                                                {"DECLINED", 3},
                                                {"TENTATIVE", 4},
                                                {"DELEGATED", 5},
                                                {"COMPLETED", 6},
                                                {"IN-PROCESS", 7}}};
constexpr NumberTable<4> roles{{{"REQ-PARTICIPANT", 1}, {"OPT-PARTICIPANT", 2}, {"CHAIR", 3}, {"NON-PARTICIPANT", 4}}};
constexpr NumberTable<4> userTypes{{{"INDIVIDUAL", 1}, {"ROOM", 2}, {"RESOURCE", 3}, {"GROUP", 4}}};

int availabilityNumber(icalcomponent* component, std::string_view text) {
    std::optional<int> busyStatus;
    for (const std::string& value : propertyValues(text, "X-MICROSOFT-CDO-BUSYSTATUS"))
        if (!busyStatus) busyStatus = numberFor(busyStatuses, value);
    if (busyStatus) return *busyStatus;
    icalproperty* property = icalcomponent_get_first_property(component, ICAL_TRANSP_PROPERTY);
    const bool transparent = property != nullptr && icalproperty_get_transp(property) == ICAL_TRANSP_TRANSPARENT;
    return transparent ? 1 : 0;
}

std::optional<std::string> parameterText(icalproperty* property, const char* name) {
    // The generic reader gives the text as it stands, also of values that the library's enumerations do not know.
    char* text = icalproperty_get_parameter_as_string_r(property, name);
    if (text == nullptr) return std::nullopt;
    std::string result = repairedUtf8(text);
    icalmemory_free_buffer(text);
    return result;
}

/// A parameter's number: `absent` where it is missing, 0 where its value is unknown.
template <std::size_t Count>
int parameterNumber(icalproperty* property, const char* name, const NumberTable<Count>& table, int absent) {
    const auto text = parameterText(property, name);
    return text ? numberFor(table, *text).value_or(0) : absent;
}

struct ParticipantDefaults {
    int status, role, type;
};

EventParticipant participant(icalproperty* property, const ParticipantDefaults& absent,
                             const std::vector<std::string>& userAddresses) {
    EventParticipant result;
    result.name = parameterText(property, "CN");
    if (const char* address = icalproperty_get_value_as_string(property)) result.url = repairedUtf8(address);
    result.status = parameterNumber(property, "PARTSTAT", participationStatuses, absent.status);
    result.role = parameterNumber(property, "ROLE", roles, absent.role);
    result.type = parameterNumber(property, "CUTYPE", userTypes, absent.type);
    std::string address = lowercased(result.url ? trimmed(*result.url) : "");
    if (address.starts_with("mailto:")) address.erase(0, 7);
    result.isCurrentUser = std::find(userAddresses.begin(), userAddresses.end(), address) != userAddresses.end();
    return result;
}

std::optional<ExtraDate> extraDate(icalproperty* property) {
    const icaldatetimeperiodtype value = icalproperty_get_rdate(property);
    const bool isPeriod = icaltime_is_null_time(value.time) != 0;
    const auto start = eventTime(isPeriod ? value.period.start : value.time, property);
    if (!start) return std::nullopt;
    ExtraDate result{*start, std::nullopt, std::nullopt};
    if (!isPeriod) return result;
    if (icaltime_is_null_time(value.period.end) == 0)
        result.end = eventTime(value.period.end, property);
    else
        result.duration = eventDuration(value.period.duration);
    return result;
}

/// One rule is the rule; more than these are an attempt to stall the reader.
constexpr std::size_t maximumRules = 16;

/// The rules as they stand in the text: the library writes them anew from numbers of 16 bits.
std::vector<std::string> rulesOf(std::string_view text, std::string_view name) {
    std::vector<std::string> rules = propertyValues(text, name);
    rules.resize(std::min(rules.size(), maximumRules));
    return rules;
}

void readRecurrence(icalcomponent* component, std::string_view text, EventComponent& event) {
    event.recurrenceId = firstTime(component, ICAL_RECURRENCEID_PROPERTY);
    if (icalproperty* id = icalcomponent_get_first_property(component, ICAL_RECURRENCEID_PROPERTY)) {
        const auto range = parameterText(id, "RANGE");
        event.thisAndFuture = range && upperCased(*range) == "THISANDFUTURE";
    }
    event.rules = rulesOf(text, "RRULE");
    event.excludedRules = rulesOf(text, "EXRULE");
    forEachProperty(component, ICAL_RDATE_PROPERTY, [&](auto* p) {
        if (auto date = extraDate(p)) event.extraDates.push_back(std::move(*date));
    });
    forEachProperty(component, ICAL_EXDATE_PROPERTY, [&](auto* p) {
        if (auto date = eventTime(icalproperty_get_exdate(p), p)) event.excludedDates.push_back(std::move(*date));
    });
}

void readParticipants(icalcomponent* component, EventComponent& event, const std::vector<std::string>& userAddresses) {
    if (icalproperty* organizer = icalcomponent_get_first_property(component, ICAL_ORGANIZER_PROPERTY))
        event.organizer = participant(organizer, {.status = 0, .role = 0, .type = 1}, userAddresses);
    forEachProperty(component, ICAL_ATTENDEE_PROPERTY, [&](icalproperty* p) {
        if (!event.attendees) event.attendees.emplace();
        event.attendees->push_back(participant(p, {.status = 1, .role = 1, .type = 1}, userAddresses));
    });
}

std::optional<EventComponent> eventComponent(icalcomponent* component, std::string_view text,
                                             const std::vector<std::string>& userAddresses) {
    const auto start = firstTime(component, ICAL_DTSTART_PROPERTY);
    if (!start) return std::nullopt;
    EventComponent event;
    event.start = *start;
    event.end = firstTime(component, ICAL_DTEND_PROPERTY);
    if (icalproperty* p = icalcomponent_get_first_property(component, ICAL_DURATION_PROPERTY))
        event.duration = eventDuration(icalproperty_get_duration(p));
    event.uid = firstText(component, ICAL_UID_PROPERTY).value_or("");
    if (icalproperty* p = icalcomponent_get_first_property(component, ICAL_SEQUENCE_PROPERTY))
        event.sequence = icalproperty_get_sequence(p);
    event.summary = firstText(component, ICAL_SUMMARY_PROPERTY);
    event.location = firstText(component, ICAL_LOCATION_PROPERTY);
    event.description = firstText(component, ICAL_DESCRIPTION_PROPERTY);
    event.url = firstText(component, ICAL_URL_PROPERTY);
    event.status = statusNumber(component);
    event.availability = availabilityNumber(component, text);
    if (const auto changed = firstTime(component, ICAL_LASTMODIFIED_PROPERTY))
        event.lastModified = Instant{changed->wall.time_since_epoch()};
    readRecurrence(component, text, event);
    readParticipants(component, event, userAddresses);
    return event;
}

} // namespace

std::optional<EventComponent> parseEvent(std::string_view component, const std::vector<std::string>& userAddresses) {
    const std::string text = readableText(component);
    const IcalComponent parsed(icalparser_parse_string(text.c_str()));
    if (parsed == nullptr || icalcomponent_isa(parsed.get()) != ICAL_VEVENT_COMPONENT) return std::nullopt;
    return eventComponent(parsed.get(), text, userAddresses);
}

} // namespace vesk::vdir
