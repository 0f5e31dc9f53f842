#pragma once

#include "VeskPlatform/Apple/AXElement.hpp"

#import <CoreFoundation/CoreFoundation.h>

#include <optional>

namespace vesk {

/// The value of an attribute: a text, a truth value, a number, a point, a size, an element or an array; of an array,
/// the items that are one of these. None for what has another type.
std::optional<AccessibilityValue> accessibilityValue(CFTypeRef value, AXElements& elements);

} // namespace vesk
