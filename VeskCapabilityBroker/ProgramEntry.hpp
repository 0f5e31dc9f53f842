#pragma once

#include "VeskPlatform/Platform.hpp"

namespace vesk {

/// The program on its own standard streams: what `main` does once it has the ports. Returns the exit status.
int runProgram(int count, char** values, Platform& platform);

/// To be called first: a reader that went away, a file past the user's limit and missing standard streams are failures
/// with their line on standard error, not silent deaths.
void prepareProcess();

} // namespace vesk
