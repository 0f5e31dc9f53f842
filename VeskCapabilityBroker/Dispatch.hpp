#pragma once

#include "VeskCapabilityBroker/BrokerCommand.hpp"
#include "VeskCapabilityBroker/JsonOutput.hpp"
#include "VeskPlatform/Platform.hpp"
#include "VeskSupport/Task.hpp"

namespace vesk {

/// Runs the one operation of `command`, behind its gate where it has one, and returns its record. What the operation
/// throws passes through.
Task<AnyEncodable> dispatch(Platform& platform, BrokerCommand command);

} // namespace vesk
