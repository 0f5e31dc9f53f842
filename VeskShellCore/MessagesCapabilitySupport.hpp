#pragma once

#include "VeskPlatform/Platform.hpp"
#include "VeskShellCore/CapabilityModels.hpp"
#include "VeskSupport/Task.hpp"

/// Whether this program may script the messaging program. Nothing is kept; neither status fails.
namespace vesk::VeskMessagesCapabilitySupport {

/// What stands now: no prompt, and nothing is started.
CapabilityStatus status(Platform& platform, const Bundle& bundle);

/// May start the messaging program and ask the user. No script is run: it could only be one that sends or reads.
Task<CapabilityStatus> requestStatus(Platform& platform, const Bundle& bundle);

/// Whether the bundle's signature grants scripting at all.
bool hasAutomationEntitlement(Platform& platform, const Bundle& bundle);

} // namespace vesk::VeskMessagesCapabilitySupport
