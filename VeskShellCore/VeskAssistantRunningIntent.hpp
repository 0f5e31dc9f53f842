#pragma once

#include "VeskShellCore/PackagedServiceStatus.hpp"

#include <optional>

namespace vesk::VeskAssistantRunningIntent {

/// Whether the assistant counts as wanted running: what was kept decides, else any sign of life, else whether the
/// installed service is enabled, which it is where nothing says otherwise.
bool resolve(const PackagedServiceStatus& serviceStatus, std::optional<bool> durableWasRunning);

} // namespace vesk::VeskAssistantRunningIntent
