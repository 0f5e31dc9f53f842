#pragma once

#include "VeskPlatform/Platform.hpp"
#include "vesk/CommandLine.hpp"

#include <string>

namespace vesk {

/// Runs a verb of `vesk secrets` and returns JSON; only `read` returns a secret. An archive is written with mode 0600,
/// whole or not at all, and never through a link, which could lead it to where others read.
std::string runSecrets(const SecretsCommand& command, Platform& platform);

} // namespace vesk
