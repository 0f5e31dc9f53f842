#pragma once

#include "VeskPlatform/Linux/Vdir/RuleParts.hpp"

#include <bitset>

namespace vesk::vdir {

/// Which days the date parts of a rule allow. Built once for a rule, then one cheap test for each day.
class RuleDayFilter {
public:
    /// What a rule of a day or more leaves open, its start's own day fills in (RFC 5545, section 3.3.10).
    RuleDayFilter(const RuleParts& rule, WallDay start);

    bool allows(WallDay day) const;

private:
    /// A set of numbers that count from 1 and, negative, from the end (-1 is the last).
    class Numbers {
    public:
        explicit Numbers(const std::vector<int>& numbers);
        bool all() const { return all_; }
        /// Whether the `number`th of `count` is meant.
        bool contain(int number, int count) const;
        void onlyAllow(int number);

    private:
        bool all_ = true;
        std::bitset<400> fromStart_, fromEnd_;
    };

    bool allowsWeek(WallDay day) const;
    bool allowsWeekday(WallDay day, int ofMonth, int monthLength, int ofYear, int yearLength) const;

    Numbers months_, weekNumbers_, yearDays_, monthDays_;
    bool allWeekdays_;
    std::bitset<7> weekdays_;
    std::vector<RuleWeekday> numberedWeekdays_;
    bool numbersCountInYear_;
    int weekStart_;
};

} // namespace vesk::vdir
