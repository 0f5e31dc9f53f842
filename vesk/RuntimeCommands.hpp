#pragma once

#include "VeskPlatform/Platform.hpp"
#include "VeskShellCore/VeskRuntimeDescriptor.hpp"
#include "vesk/CommandLine.hpp"

#include <string>

namespace vesk {

/// The runtime that is found from the working directory, or from the root where that is gone. Throws as
/// `VeskRuntimeLocator::resolve`.
VeskRuntimeDescriptor locatedRuntime(Platform& platform);

/// Runs a verb of `vesk runtime` and returns its record as JSON: an empty object where the runtime gives back nothing.
/// Texts, documents and secrets come from standard input.
std::string runRuntime(const RuntimeCommand& command, Platform& platform);

/// Runs a verb of `vesk broker` and returns its record as JSON.
std::string runBroker(const BrokerCommand& command, Platform& platform);

} // namespace vesk
