#include "VeskSupport/PosixZone.hpp"

#include <array>
#include <cstdio>
#include <cstdlib>

namespace vesk {

namespace {

using std::chrono::seconds;

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// Takes a value from the front of the text, piece by piece. A piece that is not there takes nothing.
class Scanner {
public:
    explicit Scanner(std::string_view text) : rest_(text) {}

    bool atEnd() const { return rest_.empty(); }
    bool nextIs(char c) const { return !rest_.empty() && rest_.front() == c; }
    bool take(char c) {
        if (!nextIs(c)) return false;
        rest_.remove_prefix(1);
        return true;
    }

    std::optional<int> number(int least, int most) {
        std::size_t digits = 0;
        int value = 0;
        while (digits < rest_.size() && digits < 4 && isDigit(rest_[digits]))
            value = value * 10 + (rest_[digits++] - '0');
        if (digits == 0 || value < least || value > most) return std::nullopt;
        rest_.remove_prefix(digits);
        return value;
    }

    /// Three letters or more, or anything like "+0530" in angle brackets.
    bool name() {
        std::size_t length = 0;
        if (nextIs('<')) {
            length = rest_.find('>');
            if (length == std::string_view::npos || length < 4) return false;
            for (const char c : rest_.substr(1, length - 1))
                if (!isLetter(c) && !isDigit(c) && c != '+' && c != '-') return false;
            ++length;
        } else {
            while (length < rest_.size() && isLetter(rest_[length])) ++length;
            if (length < 3) return false;
        }
        rest_.remove_prefix(length);
        return true;
    }

    /// `[+-]hh[:mm[:ss]]`.
    std::optional<seconds> time(int mostHours) {
        const bool negative = take('-');
        if (!negative) take('+');
        const auto hours = number(0, mostHours);
        if (!hours) return std::nullopt;
        int total = *hours * 3600;
        for (const int unit : {60, 1}) {
            if (!take(':')) break;
            const auto part = number(0, 59);
            if (!part) return std::nullopt;
            total += *part * unit;
        }
        return seconds(negative ? -total : total);
    }

private:
    std::string_view rest_;
};

bool readDay(Scanner& scanner, PosixZoneChange& change) {
    if (scanner.take('M')) {
        const auto month = scanner.number(1, 12);
        if (!month || !scanner.take('.')) return false;
        const auto week = scanner.number(1, 5);
        if (!week || !scanner.take('.')) return false;
        const auto weekday = scanner.number(0, 6);
        if (!weekday) return false;
        change.month = *month, change.week = *week, change.weekday = *weekday;
        return true;
    }
    const bool common = scanner.take('J');
    change.form = common ? PosixZoneChange::Form::dayOfCommonYear : PosixZoneChange::Form::dayOfYear;
    const auto day = scanner.number(common ? 1 : 0, 365);
    if (day) change.day = *day;
    return day.has_value();
}

std::optional<PosixZoneChange> readChange(Scanner& scanner) {
    PosixZoneChange change;
    if (!scanner.take(',') || !readDay(scanner, change)) return std::nullopt;
    if (scanner.take('/')) {
        const auto time = scanner.time(167);
        if (!time) return std::nullopt;
        change.time = *time;
    }
    return change;
}

/// What stands behind the offset of standard time; none where it is malformed.
std::optional<PosixDaylightSaving> readSaving(Scanner& scanner, seconds standardOffset) {
    if (!scanner.name()) return std::nullopt;
    PosixDaylightSaving saving{.offset = standardOffset + std::chrono::hours(1), .start = {}, .end = {}};
    if (!scanner.atEnd() && !scanner.nextIs(',')) {
        const auto west = scanner.time(24);
        if (!west) return std::nullopt;
        saving.offset = -*west;
    }
    if (scanner.atEnd()) {
        saving.start.month = 3, saving.start.week = 2;
        saving.end.month = 11, saving.end.week = 1;
        return saving;
    }
    const auto start = readChange(scanner);
    const auto end = start ? readChange(scanner) : std::nullopt;
    if (!end || !scanner.atEnd()) return std::nullopt;
    saving.start = *start, saving.end = *end;
    return saving;
}

std::string fixedZone(seconds offset) {
    if (offset == seconds(0)) return "UTC";
    const auto total = static_cast<int>(std::abs(offset.count()));
    std::array<char, 32> text{};
    const int hours = total / 3600, minutes = total / 60 % 60, rest = total % 60;
    std::snprintf(text.data(), text.size(), "GMT%c%02d:%02d", offset < seconds(0) ? '-' : '+', hours, minutes);
    std::string result(text.data());
    if (rest == 0) return result;
    std::snprintf(text.data(), text.size(), ":%02d", rest);
    return result + text.data();
}

} // namespace

std::optional<PosixZone> parsePosixZone(std::string_view text) {
    Scanner scanner(text);
    if (!scanner.name()) return std::nullopt;
    const auto west = scanner.time(24);
    if (!west) return std::nullopt;
    PosixZone zone{.offset = -*west, .saving = std::nullopt};
    if (scanner.atEnd()) return zone;
    zone.saving = readSaving(scanner, zone.offset);
    return zone.saving ? std::optional(zone) : std::nullopt;
}

std::optional<std::string> zoneForPosixText(std::string_view text) {
    const auto zone = parsePosixZone(text);
    if (!zone) return std::nullopt;
    return zone->saving ? std::string(text) : fixedZone(zone->offset);
}

} // namespace vesk
