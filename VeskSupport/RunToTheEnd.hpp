#pragma once

#include "VeskSupport/Task.hpp"

namespace vesk {

/// Makes the calling thread the main executor for one task and whatever that starts. Throws what it throws, and
/// ErrorRecord "VeskCapabilityBroker" 70 for one that is never answered.
void runToTheEnd(Task<void> task);

} // namespace vesk
