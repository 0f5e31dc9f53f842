#pragma once

#include "VeskPlatform/Platform.hpp"
#include "vesk/CommandLine.hpp"

#include <string>

namespace vesk {

/// Runs a verb of `vesk runtime` and returns its record as JSON: an empty object where the runtime gives back nothing.
/// Texts, documents and secrets come from standard input.
std::string runRuntime(const RuntimeCommand& command, Platform& platform);

/// Runs a verb of `vesk broker` and returns its record as JSON.
std::string runBroker(const BrokerCommand& command, Platform& platform);

} // namespace vesk
