#pragma once

#include "VeskPlatform/Displays.hpp"

#include <optional>
#include <vector>

namespace vesk {

/// The smallest rectangle that holds all of these, also those without an area; none where there are none.
std::optional<ScreenRectangle> unionOf(const std::vector<ScreenRectangle>& rectangles);

/// The space that all displays take together. Throws NativeControlError 86 and 87 where the system does not tell the
/// displays, 88 where they have no area.
ScreenRectangle currentDesktopBounds(Displays& displays);

} // namespace vesk
