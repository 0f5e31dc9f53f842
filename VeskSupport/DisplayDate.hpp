#pragma once

#include "VeskSupport/Instant.hpp"

#include <memory>
#include <string>

namespace vesk {

enum class DisplayTime { none, shortStyle, full };

/// Writes dates for people in the words of a locale (an ICU identifier) and the time of a zone: the medium style with
/// no time or a short one, or everything in full. Making a style ready costs ICU more than writing a date, so that each
/// is made once. One thread at a time.
class DateDisplay {
public:
    DateDisplay(std::string locale, std::string timeZone);
    DateDisplay(DateDisplay&&) noexcept;
    DateDisplay& operator=(DateDisplay&&) noexcept;
    ~DateDisplay();

    std::string text(Instant instant, DisplayTime time) const;

private:
    struct Formats;
    std::string locale_, timeZone_;
    std::unique_ptr<Formats> formats_;
};

} // namespace vesk
