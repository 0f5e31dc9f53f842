#pragma once

#include "VeskPlatform/ApplicationAutomation.hpp"
#include "VeskPlatform/Platform.hpp"
#include "VeskSupport/Task.hpp"

#include <string>

// The user's consent to scripting an application, as the status of Mail and that of Messages need it.

namespace vesk {

/// The entitlement without which the system does not even ask the user.
inline constexpr const char* automationEntitlementKey = "com.apple.security.automation.apple-events";

/// What stands now; nobody is asked, nothing is started.
AutomationResult automationPermission(Platform& platform, const std::string& bundleIdentifier);

/// The same after asking the user where nothing is decided yet. An application that does not run is started first, and
/// given half a second to come up.
Task<AutomationResult> requestAutomation(Platform& platform, std::string bundleIdentifier);

} // namespace vesk
