#pragma once

#include "VeskPlatform/Desktop.hpp"
#include "VeskPlatform/Platform.hpp"
#include "VeskShellCore/NativeControlModels.hpp"
#include "VeskSupport/Task.hpp"

#include <string>

/// Seeing what the user has in front of them. Each call reads live state. Ports are used only when they are needed, so
/// a failure that needs no session comes before one that does.
namespace vesk::VeskNativeControlOperations {

/// The application in front, or that there is none. Needs no consent.
Task<CapabilityActiveAppResponse> activeApp(Platform& platform, Desktop& desktop);

/// What the keyboard focus is on. Throws NativeControlError 85 without consent, 91 without an element, 92 without an
/// application; an attribute that cannot be read is absent.
Task<CapabilityFocusedElementResponse> focusedElement(Platform& platform, Desktop& desktop);

/// Replaces the value of the focused field. Throws NativeControlError 82 for an empty text, 85, 91 and 92 as above, 93
/// and 94 for an element whose value cannot be set, 95 where the application refuses.
Task<CapabilityControlResponse> setFocusedValue(Platform& platform, Desktop& desktop, std::string text);

} // namespace vesk::VeskNativeControlOperations
