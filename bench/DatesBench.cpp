#include "VeskShellCore/CalendarDates.hpp"

#include <benchmark/benchmark.h>

namespace vesk {
namespace {

void makeLocalCalendar(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(LocalCalendar("Europe/Berlin"));
}
BENCHMARK(makeLocalCalendar);

void parseDateTime(benchmark::State& state, const char* text) {
    const LocalCalendar calendar("Europe/Berlin");
    for (auto _ : state) benchmark::DoNotOptimize(VeskCalendarOperations::parseDateTime(text, calendar));
}
BENCHMARK_CAPTURE(parseDateTime, local, "2026-04-26 14:00");
BENCHMARK_CAPTURE(parseDateTime, localWithSeconds, "2026-04-26T14:00:00");
BENCHMARK_CAPTURE(parseDateTime, withOffset, "2026-04-26T14:00:00+02:00");
BENCHMARK_CAPTURE(parseDateTime, withFraction, "2026-04-26T14:00:00.250Z");

void writeLocalIsoForm(benchmark::State& state) {
    const LocalCalendar calendar("Europe/Berlin");
    const Instant instant = VeskCalendarOperations::parseDateTime("2026-04-26 14:00", calendar);
    for (auto _ : state) benchmark::DoNotOptimize(calendar.isoText(instant));
}
BENCHMARK(writeLocalIsoForm);

void startOfDay(benchmark::State& state) {
    const LocalCalendar calendar("Europe/Berlin");
    const Instant instant = VeskCalendarOperations::parseDateTime("2026-04-26 14:00", calendar);
    for (auto _ : state) benchmark::DoNotOptimize(calendar.startOfDay(instant));
}
BENCHMARK(startOfDay);

} // namespace
} // namespace vesk
