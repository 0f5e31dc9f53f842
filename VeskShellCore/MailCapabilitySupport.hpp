#pragma once

#include "VeskPlatform/Platform.hpp"
#include "VeskShellCore/CapabilityModels.hpp"
#include "VeskSupport/Task.hpp"

/// Whether this program may script the mail program. Nothing is kept; neither status fails.
namespace vesk::VeskMailCapabilitySupport {

/// What stands now: no prompt, and nothing is started.
CapabilityStatus status(Platform& platform, const Bundle& bundle);

/// May start the mail program and ask the user, and counts as granted only what a real script has shown to work.
Task<CapabilityStatus> requestStatus(Platform& platform, const Bundle& bundle);

/// Whether the bundle's signature grants scripting at all.
bool hasAutomationEntitlement(Platform& platform, const Bundle& bundle);

} // namespace vesk::VeskMailCapabilitySupport
