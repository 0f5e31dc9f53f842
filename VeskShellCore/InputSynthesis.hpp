#pragma once

#include "VeskPlatform/InputEvents.hpp"
#include "VeskPlatform/Sleeper.hpp"
#include "VeskShellCore/CapabilityModels.hpp"
#include "VeskSupport/Task.hpp"

#include <cstdint>
#include <string>

// The events of one click, one text and one key in the order that applications expect, with the pauses that the slower
// of them need to notice each. Throws what posting throws.

namespace vesk {

/// Moves the pointer to `point` and clicks there. Throws NativeControlError 81 where an event cannot be made, before
/// anything has happened.
Task<void> clickAt(InputEvents& events, Sleeper& sleeper, ScreenPoint point, CapabilityMouseButton button);

/// Types UTF-16 units, one at a time. Throws NativeControlError 83 where an event cannot be made; what was typed stays.
Task<void> typeUnits(InputEvents& events, Sleeper& sleeper, std::u16string units);

/// Presses a key and lets it go; the numbers are those of KeyboardEvent. Throws NativeControlError 84 where an event
/// cannot be made.
Task<void> pressKeyCode(InputEvents& events, Sleeper& sleeper, std::uint16_t keyCode, std::uint32_t flags);

} // namespace vesk
