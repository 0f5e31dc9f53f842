#pragma once

#include "VeskPlatform/Platform.hpp"
#include "vesk/CommandLine.hpp"

#include <string>

namespace vesk {

/// Runs a verb of `vesk files` and returns its record as JSON. Writing takes its text from standard input.
std::string runFiles(const FilesCommand& command, Platform& platform);

} // namespace vesk
