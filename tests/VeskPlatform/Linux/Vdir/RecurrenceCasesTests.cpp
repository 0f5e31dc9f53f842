// The table of recurrence cases, whose answers come from another implementation (tests/data/recurrence_cases.py).

#include "tests/VeskPlatform/Linux/Vdir/CalendarText.hpp"

#include <chrono>
#include <fstream>
#include <gtest/gtest.h>

namespace vesk::test {
namespace {

struct RecurrenceCase {
    std::string name, start, rules, extraDates, excludedDates, from, to, expected;
};

std::vector<std::string> split(const std::string& text, char divider) {
    std::vector<std::string> parts(1);
    for (const char c : text)
        if (c == divider)
            parts.emplace_back();
        else
            parts.back() += c;
    return parts;
}

std::vector<RecurrenceCase> recurrenceCases() {
    std::ifstream file(VESK_SOURCE_DIR "/tests/data/recurrence_cases.tsv");
    std::vector<RecurrenceCase> cases;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with('#')) continue;
        const auto cells = split(line, '\t');
        if (cells.size() != 8) ADD_FAILURE() << "not eight cells: " << line;
        if (cells.size() != 8) continue;
        cases.push_back({cells[0], cells[1], cells[2], cells[3], cells[4], cells[5], cells[6], cells[7]});
    }
    return cases;
}

std::string property(const std::string& name, const std::string& value) {
    return name + (value.find('T') == std::string::npos ? ";VALUE=DATE:" : ":") + value + "\n";
}

std::string eventOf(const RecurrenceCase& given) {
    std::string lines = "UID:case\n" + property("DTSTART", given.start);
    for (const std::string& rule : split(given.rules, '|'))
        if (!rule.empty()) lines += "RRULE:" + rule + "\n";
    if (!given.extraDates.empty()) lines += property("RDATE", given.extraDates);
    if (!given.excludedDates.empty()) lines += property("EXDATE", given.excludedDates);
    return calendarOfEvent(lines);
}

std::string startsOf(const RecurrenceCase& given) {
    CalendarText text(eventOf(given));
    const WallTime from = wall(given.from);
    const std::size_t width = given.start.size();
    std::string starts;
    for (const std::string& occurrence : text.occurrences(given.from, given.to)) {
        if (wall(occurrence.substr(0, 15)) < from) continue;
        if (!starts.empty()) starts += ',';
        starts += occurrence.substr(0, width);
    }
    return starts;
}

TEST(RecurrenceCases, AgreeWithTheOtherImplementation) {
    const auto cases = recurrenceCases();
    ASSERT_GT(cases.size(), 600U);
    for (const RecurrenceCase& given : cases) {
        SCOPED_TRACE(given.name + ": " + given.start + " " + given.rules + " [" + given.from + ", " + given.to + ")");
        EXPECT_EQ(startsOf(given), given.expected);
    }
}

} // namespace
} // namespace vesk::test
