#pragma once

#include "VeskSupport/Records.hpp"

#include <chrono>
#include <cmath>

namespace vesk {

/// An instant whose JSON form is a number: the seconds since 2001-01-01T00:00:00Z. Reading rounds to the millisecond,
/// so that an instant comes back as it was.
struct ReferenceDate {
    Instant instant{};

    bool operator==(const ReferenceDate&) const = default;
};

inline constexpr Instant referenceInstant{std::chrono::sys_days{std::chrono::year{2001} / 1 / 1}};

inline JsonValue toJson(const ReferenceDate& date) {
    return {static_cast<double>((date.instant - referenceInstant).count()) / 1000};
}

inline void read(JsonValue& json, const records::Path& path, ReferenceDate& out) {
    double seconds = 0;
    records::read(json, path, seconds);
    // About a hundred thousand years: what lies beyond is no date of anybody's.
    if (!(std::abs(seconds) < 3e12)) records::failMistyped(path, "a date");
    out.instant = referenceInstant + std::chrono::milliseconds(std::llround(seconds * 1000));
}

} // namespace vesk
