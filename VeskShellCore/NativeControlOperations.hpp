#pragma once

#include "VeskPlatform/Platform.hpp"
#include "VeskShellCore/NativeControlModels.hpp"
#include "VeskSupport/Task.hpp"

#include <string>
#include <vector>

/// Seeing what the user has in front of them, and acting on it in their place. Each call reads live state. The desktop
/// session is looked at only after the arguments, and the consent where one is needed, have been found to do.
namespace vesk::VeskNativeControlOperations {

/// The application in front, or that there is none. Needs no consent.
Task<CapabilityActiveAppResponse> activeApp(Platform& platform);

/// What the keyboard focus is on. Throws NativeControlError 85 without consent, 91 without an element, 92 without an
/// application; an attribute that cannot be read is absent.
Task<CapabilityFocusedElementResponse> focusedElement(Platform& platform);

/// Brings a running application to the front, by its name or identifier or a part of one, and waits until it is there;
/// that it never came is an answer too. Needs no consent. Throws NativeControlError 89 for a blank target, 90 where
/// nothing of that name runs.
Task<CapabilityAppActivationResponse> activateApp(Platform& platform, std::string target);

/// Clicks at parts of the desktop's width and height from its top left corner. Throws NativeControlError 81 where the
/// events cannot be made, 85 without consent, 86 to 88 where the displays are not known.
Task<CapabilityControlResponse> click(Platform& platform, double normalizedX, double normalizedY,
                                      CapabilityMouseButton button);

/// Types into whatever has the focus. Throws NativeControlError 82 for an empty text, 83 where the events cannot be
/// made, 85 without consent.
Task<CapabilityControlResponse> typeText(Platform& platform, std::string text);

/// Replaces the value of the focused field. Throws NativeControlError 82 for an empty text, 85, 91 and 92 as above, 93
/// and 94 for an element whose value cannot be set, 95 where the application refuses.
Task<CapabilityControlResponse> setFocusedValue(Platform& platform, std::string text);

/// Presses a key by the name that parseSupportedControlKey knows. Throws NativeControlError 64 for an unknown one, 84
/// where the events cannot be made, 85 without consent.
Task<CapabilityControlResponse> pressKey(Platform& platform, std::string key,
                                         std::vector<CapabilityKeyModifier> modifiers);

} // namespace vesk::VeskNativeControlOperations
