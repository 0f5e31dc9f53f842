#pragma once

#include "VeskSupport/Instant.hpp"

#include <cstdint>
#include <optional>
#include <vector>

namespace vesk::vdir {

/// The most occurrences that one rule gives for one question. A rule that passes it ("every second") is cut off there,
/// so that a hostile invitation cannot fill the memory; a day of seconds still fits.
constexpr std::size_t maximumOccurrences = 100'000;

/// What a rule is asked for, and the answer as it grows.
class RuleWindow {
public:
    /// The rule's times from `start` on in [from, to], at most `count` of them. `start` is counted, also where the rule
    /// does not give it (RFC 5545, section 3.3.10).
    RuleWindow(WallTime start, WallTime from, WallTime to, std::optional<std::int64_t> count)
        : start_(start), from_(from), to_(to), left_(count) {}

    WallTime start() const { return start_; }
    WallTime to() const { return to_; }
    /// The time before which nothing matters; the start, where there is something to count.
    WallTime firstOfInterest() const { return left_ || from_ < start_ ? start_ : from_; }

    /// Takes the rule's next time, in ascending order; false where no further one matters.
    bool add(WallTime wall) {
        if (wall < start_) return true;
        if (wall > to_ || isSpent(wall)) return false;
        if (left_) --*left_;
        if (wall >= from_) result_.push_back(wall);
        return result_.size() < maximumOccurrences;
    }

    /// Whether all times of this day lie between the start and the window, so that their number is all that matters.
    bool onlyCounts(WallDay day) const {
        return start_ < WallTime{day} && WallTime{day + std::chrono::days(1)} <= from_;
    }
    /// Takes so many times before the window at once; false where no further one matters.
    bool skip(std::int64_t times) {
        if (!left_ || times == 0) return true;
        if (isSpent(WallTime::max())) return false;
        *left_ -= times;
        return *left_ > 0;
    }

    std::vector<WallTime> taken() { return std::move(result_); }

private:
    /// Whether the count is used up; the start that the rule leaves out is counted with the first time behind it.
    bool isSpent(WallTime wall) {
        if (!left_) return false;
        if (!startCounted_ && wall > start_) --*left_;
        startCounted_ = true;
        return *left_ <= 0;
    }

    WallTime start_, from_, to_;
    std::optional<std::int64_t> left_;
    bool startCounted_ = false;
    std::vector<WallTime> result_;
};

} // namespace vesk::vdir
