#pragma once

#include "VeskPlatform/Platform.hpp"
#include "vesk/CommandLine.hpp"

#include <string>

namespace vesk {

/// Runs `vesk compose` and returns its record as JSON. On a terminal, standard error shows how far it is.
std::string runCompose(const ComposeCommand& command, Platform& platform);

} // namespace vesk
