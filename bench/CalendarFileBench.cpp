#include "VeskPlatform/Linux/Vdir/CalendarFile.hpp"

#include <benchmark/benchmark.h>

namespace vesk::vdir {
namespace {

/// An event as calendar programs write it; a rule makes it recur.
std::string calendarText(const std::string& rule) {
    return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Example//EN\r\nBEGIN:VEVENT\r\nUID:0b6f1f5c-41c5\r\n"
           "DTSTAMP:20260101T080000Z\r\nDTSTART;TZID=Europe/Berlin:20200106T090000\r\n"
           "DTEND;TZID=Europe/Berlin:20200106T093000\r\nSUMMARY:Standup\r\nLOCATION:Room 4.12\r\n"
           + (rule.empty() ? "" : "RRULE:" + rule + "\r\n") + "END:VEVENT\r\nEND:VCALENDAR\r\n";
}

CalendarFile fileOf(const std::string& text) { return {text, scanCalendarText(text)}; }

void scanFile(benchmark::State& state) {
    const std::string text = calendarText("");
    for (auto _ : state) benchmark::DoNotOptimize(scanCalendarText(text));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK(scanFile);

void parseEvent(benchmark::State& state) {
    const CalendarFile file = fileOf(calendarText(""));
    for (auto _ : state) benchmark::DoNotOptimize(parseItem(file, 0, {}));
}
BENCHMARK(parseEvent);

void expandOneDay(benchmark::State& state, const char* rule) {
    const CalendarFile file = fileOf(calendarText(rule));
    Zones zones(std::make_shared<LocalCalendar>("Europe/Berlin"), [](const std::string&) {});
    const auto components = parseItem(file, 0, {});
    const ZoneFinder zoneOf = zoneFinder(file, zones);
    const Instant from{std::chrono::sys_days{std::chrono::year{2026} / 4 / 27}};
    for (auto _ : state) benchmark::DoNotOptimize(occurrencesOf(components, from, from + std::chrono::days(1), zoneOf));
}
BENCHMARK_CAPTURE(expandOneDay, daily, "FREQ=DAILY");
BENCHMARK_CAPTURE(expandOneDay, weekly, "FREQ=WEEKLY;BYDAY=MO,WE,FR");
BENCHMARK_CAPTURE(expandOneDay, monthly, "FREQ=MONTHLY;BYDAY=-1MO");
BENCHMARK_CAPTURE(expandOneDay, counted, "FREQ=WEEKLY;COUNT=500");
BENCHMARK_CAPTURE(expandOneDay, everyMinute, "FREQ=MINUTELY");

} // namespace
} // namespace vesk::vdir
