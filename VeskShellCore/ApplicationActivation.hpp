#pragma once

#include "VeskPlatform/Platform.hpp"
#include "VeskPlatform/RunningApplications.hpp"
#include "VeskSupport/Task.hpp"

#include <chrono>
#include <string>

// Finding the application that the user means and bringing it to the front.

namespace vesk {

/// The first running application whose identifier, or else name, is `namedOrBundled` in any case, or else contains it.
/// Throws NativeControlError 90 where none is. Only applications that can have windows count.
RunningApplication findRunningApp(RunningApplications& applications, const std::string& namedOrBundled);

/// Looks every tenth of a second until the application, or another process of the same identifier, is in front; false
/// where it is not within the time. No time at all is false without a look.
Task<bool> waitForFrontmostApp(Platform& platform, RunningApplication application, std::chrono::milliseconds timeout);

/// Opens the application again by what it is known by: its identifier, else its path, else its name. False where the
/// opener fails or nothing is known. Throws what a failure to start the opener throws.
Task<bool> launchApplicationViaOpen(RunningApplications& applications, RunningApplication application);

} // namespace vesk
