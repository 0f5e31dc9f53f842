#include "VeskSupport/Iso8601.hpp"

#include <cstdio>

namespace vesk {
namespace {

using namespace std::chrono;

/// Takes fixed-width pieces off the front of a text; once something does not fit, it stays failed.
class Cursor {
public:
    explicit Cursor(std::string_view text) : rest_(text) {}

    int digits(std::size_t count) {
        if (rest_.size() < count) return fail();
        int value = 0;
        for (std::size_t i = 0; i < count; ++i) {
            if (rest_[i] < '0' || rest_[i] > '9') return fail();
            value = value * 10 + (rest_[i] - '0');
        }
        rest_.remove_prefix(count);
        return value;
    }
    void literal(char c) {
        if (!take(c)) fail();
    }
    bool take(char c) {
        if (rest_.empty() || rest_.front() != c) return false;
        rest_.remove_prefix(1);
        return true;
    }
    /// One digit or more as milliseconds.
    milliseconds fraction() {
        int value = 0, weight = 100;
        bool any = false;
        while (!rest_.empty() && rest_.front() >= '0' && rest_.front() <= '9') {
            value += weight * (rest_.front() - '0');
            weight /= 10;
            any = true;
            rest_.remove_prefix(1);
        }
        if (!any) fail();
        return milliseconds(value);
    }
    int fail() {
        failed_ = true;
        return 0;
    }
    bool succeeded() const { return !failed_ && rest_.empty(); }

private:
    std::string_view rest_;
    bool failed_ = false;
};

WallDay readDay(Cursor& cursor) {
    const year y{cursor.digits(4)};
    cursor.literal('-');
    const month m{static_cast<unsigned>(cursor.digits(2))};
    cursor.literal('-');
    const day d{static_cast<unsigned>(cursor.digits(2))};
    const year_month_day date{y, m, d};
    if (!date.ok() || y < year{1}) {
        cursor.fail();
        return {};
    }
    return local_days{date};
}

seconds readTime(Cursor& cursor, bool withSeconds) {
    const int h = cursor.digits(2);
    cursor.literal(':');
    const int m = cursor.digits(2);
    int s = 0;
    if (withSeconds) {
        cursor.literal(':');
        s = cursor.digits(2);
    }
    if (h > 23 || m > 59 || s > 59) cursor.fail();
    return hours(h) + minutes(m) + seconds(s);
}

seconds readOffset(Cursor& cursor) {
    if (cursor.take('Z')) return seconds(0);
    const bool behind = cursor.take('-');
    if (!behind) cursor.literal('+');
    const seconds offset = readTime(cursor, false);
    return behind ? -offset : offset;
}

void appendWall(std::string& out, WallTime wall) {
    const auto date = floor<days>(wall);
    const year_month_day ymd{date};
    const hh_mm_ss time{wall - date};
    char buffer[64];
    const int length = std::snprintf(
        buffer, sizeof buffer, "%04d-%02u-%02uT%02d:%02d:%02d", static_cast<int>(ymd.year()),
        static_cast<unsigned>(ymd.month()), static_cast<unsigned>(ymd.day()), static_cast<int>(time.hours().count()),
        static_cast<int>(time.minutes().count()), static_cast<int>(time.seconds().count()));
    out.append(buffer, static_cast<std::size_t>(length));
}

/// An offset can lead out of the years that have four digits, to what could be written in UTC and not be read again.
bool hasWrittenYear(Instant instant) {
    const year written = year_month_day{floor<days>(instant)}.year();
    return written >= year{1} && written <= year{9999};
}

WallTime wallOf(Instant instant, seconds offset) {
    return WallTime{floor<seconds>(instant).time_since_epoch() + offset};
}

} // namespace

std::optional<WallDay> parseWallDay(std::string_view text) {
    Cursor cursor(text);
    const WallDay result = readDay(cursor);
    return cursor.succeeded() ? std::optional(result) : std::nullopt;
}

std::optional<WallTime> parseWallTime(std::string_view text, char separator, bool withSeconds) {
    Cursor cursor(text);
    WallTime result = readDay(cursor);
    cursor.literal(separator);
    result += readTime(cursor, withSeconds);
    return cursor.succeeded() ? std::optional(result) : std::nullopt;
}

std::optional<Instant> parseInternetDateTime(std::string_view text, FractionalSeconds fraction) {
    Cursor cursor(text);
    WallTime wall = readDay(cursor);
    cursor.literal('T');
    wall += readTime(cursor, true);
    milliseconds part{0};
    if (fraction == FractionalSeconds::required) {
        cursor.literal('.');
        part = cursor.fraction();
    }
    const seconds offset = readOffset(cursor);
    if (!cursor.succeeded()) return std::nullopt;
    const Instant instant{wall.time_since_epoch() - offset + part};
    return hasWrittenYear(instant) ? std::optional(instant) : std::nullopt;
}

std::string formatInternetDateTime(Instant instant, seconds offset) {
    std::string result;
    appendWall(result, wallOf(instant, offset));
    if (offset == seconds(0)) return result + "Z";
    const hh_mm_ss parts{abs(offset)};
    char buffer[24];
    std::snprintf(buffer, sizeof buffer, "%c%02d:%02d", offset < seconds(0) ? '-' : '+',
                  static_cast<int>(parts.hours().count()), static_cast<int>(parts.minutes().count()));
    result += buffer;
    if (parts.seconds() != seconds(0)) {
        std::snprintf(buffer, sizeof buffer, ":%02d", static_cast<int>(parts.seconds().count()));
        result += buffer;
    }
    return result;
}

std::string formatUtcMilliseconds(Instant instant) {
    std::string result;
    appendWall(result, wallOf(instant, seconds(0)));
    char buffer[16];
    const auto part = instant - floor<seconds>(instant);
    std::snprintf(buffer, sizeof buffer, ".%03dZ", static_cast<int>(part.count()));
    return result + buffer;
}

} // namespace vesk
