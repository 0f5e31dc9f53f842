#pragma once

#include "VeskPlatform/ProgramLauncher.hpp"

namespace vesk {

/// Throws PosixError EINVAL for a launch with a null byte in a text or with a variable that has no name: what a program
/// cannot be told as it stands would reach it as something else.
void checkWords(const ProgramLaunch& launch);

} // namespace vesk
