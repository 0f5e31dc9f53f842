#pragma once

#include "VeskPlatform/Platform.hpp"
#include "vesk/CommandLine.hpp"

#include <string>

namespace vesk {

/// Runs `vesk sign-out` and returns the transaction as JSON, `{}` without one. Throws ErrorRecord: "VeskCompanion" 3
/// where it cannot be kept, 4 where there is none to advance.
std::string runSignOut(const SignOutCommand& command, Platform& platform);

} // namespace vesk
