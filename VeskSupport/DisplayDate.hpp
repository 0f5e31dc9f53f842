#pragma once

#include "VeskSupport/Instant.hpp"

#include <string>

namespace vesk {

enum class DisplayTime { none, shortStyle, full };

/// A date for people in the words of a locale (an ICU identifier) and the time of a zone: the medium style with no time
/// or a short one, or everything in full.
std::string displayDate(Instant instant, DisplayTime time, const std::string& locale, const std::string& timeZone);

} // namespace vesk
