#pragma once

#include "VeskPlatform/Platform.hpp"
#include "vesk/CommandLine.hpp"

#include <string>

namespace vesk {

/// Runs `vesk sign-in` and returns its record as JSON; a grant is read from standard input. Nothing of it holds a
/// secret: the credentials go to the keychain. Throws ErrorRecord: "VeskCompanion" 1 where no sign-in is waiting, 2
/// without a grant, 3 where the state of the sign-in cannot be kept or removed.
std::string runSignIn(const SignInCommand& command, Platform& platform);

} // namespace vesk
