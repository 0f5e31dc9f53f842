#pragma once

#include "VeskSupport/Instant.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace vesk {

/// `yyyy-MM-dd`, exactly, years 0001 to 9999; none where the text or the date is anything else.
std::optional<WallDay> parseWallDay(std::string_view text);

/// `yyyy-MM-dd`, `separator`, `HH:mm` and, where `withSeconds`, `:ss`; exactly, hours 00 to 23, no leap seconds.
std::optional<WallTime> parseWallTime(std::string_view text, char separator, bool withSeconds);

enum class FractionalSeconds { required, refused };

/// The internet date-time of RFC 3339, section 5.6: `yyyy-MM-ddTHH:mm:ss`, a fraction where asked for, then `Z` or an
/// offset of hours and minutes with a colon; years 0001 to 9999, also in UTC. Digits beyond milliseconds are dropped.
std::optional<Instant> parseInternetDateTime(std::string_view text, FractionalSeconds fraction);

/// `yyyy-MM-ddTHH:mm:ss` and the offset, "Z" for an offset of zero. Offsets of odd seconds are written with them.
std::string formatInternetDateTime(Instant instant, std::chrono::seconds offset);

/// The same in UTC with milliseconds: `2026-04-26T14:03:22.517Z`.
std::string formatUtcMilliseconds(Instant instant);

} // namespace vesk
