#include "VeskShellCore/CalendarModels.hpp"
#include "VeskSupport/Json.hpp"

#include <benchmark/benchmark.h>

namespace vesk {
namespace {

/// A response of `count` events with the texts that events usually have.
CapabilityCalendarEventsResponse dayOf(std::int64_t count) {
    CapabilityCalendarEvent event;
    event.identifier = "3p8k2c9a1v5t7r0q4m6j@example.com";
    event.sourceKey = "apple_calendar:home/work:3p8k2c9a1v5t7r0q4m6j@example.com:2026-04-26T14:00:00+02:00";
    event.calendarIdentifier = "home/work";
    event.calendarTitle = "Work";
    event.title = "Budget review";
    event.startAt = event.endAt = "2026-04-26T14:00:00+02:00";
    event.occurrenceStartAt = event.startAt;
    event.notes = "Please read the \"draft\" beforehand:\nhttps://example.com/draft – Größe und Übersicht";
    event.status = "confirmed";
    event.availability = "busy";
    event.attendees = {{"Dana Weiss", "mailto:dana@example.com", "accepted", "required", "person", true},
                       {"Olga Brandt", "mailto:olga@example.com", "tentative", "required", "person", false}};
    CapabilityCalendarEventsResponse response;
    response.brokerPath = "Vesk.app";
    response.view = "today";
    response.events.assign(static_cast<std::size_t>(count), event);
    return response;
}

void writeEvents(benchmark::State& state) {
    const auto response = dayOf(state.range(0));
    for (auto _ : state) benchmark::DoNotOptimize(writeJson(toJson(response)));
}
BENCHMARK(writeEvents)->Arg(1)->Arg(10)->Arg(1000);

void readEvents(benchmark::State& state) {
    const std::string text = writeJson(toJson(dayOf(state.range(0))));
    for (auto _ : state) benchmark::DoNotOptimize(fromJson<CapabilityCalendarEventsResponse>(parseJson(text)));
}
BENCHMARK(readEvents)->Arg(10)->Arg(1000);

} // namespace
} // namespace vesk
