#pragma once

#include "VeskPlatform/ByteOutput.hpp"
#include "VeskPlatform/Platform.hpp"

#include <string>
#include <vector>

namespace vesk {

/// Runs one command to its end on the calling thread, which becomes the main serial executor. `arguments` begin with
/// argument zero. Returns the exit status: 0 and a JSON document on `output`, or 1 and one line on `errorOutput`.
/// Lines of the log that are still queued are written before it returns.
int runBroker(const std::vector<std::string>& arguments, Platform& platform, ByteOutput& output,
              ByteOutput& errorOutput) noexcept;

} // namespace vesk
