#pragma once

#include "VeskPlatform/Platform.hpp"
#include "VeskShellCore/CapabilityModels.hpp"
#include "VeskSupport/Task.hpp"

#include <optional>
#include <vector>

namespace vesk {

/// The state of each capability that something here can tell, in the order of `CapabilityKind`. Probed afresh, one
/// after the other, on the main executor; never prompts, never fails: an answer that nobody knows is `unavailable`.
Task<std::vector<CapabilityStatus>> currentStatuses(Platform& platform);

/// The current statuses with `overriding` in the place of the entry of its kind, or at the end where there is none.
Task<CapabilityStatusReport> capabilityReport(Platform& platform,
                                              std::optional<CapabilityStatus> overriding = std::nullopt);

} // namespace vesk
