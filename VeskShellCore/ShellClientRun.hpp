#pragma once

#include "VeskShellCore/CommandExecution.hpp"
#include "VeskShellCore/VeskRuntimeDescriptor.hpp"

#include <optional>
#include <string>
#include <vector>

namespace vesk {

/// The run of one of the runtime's tools in the surroundings that it is made for: in the folder of the runtime, and
/// with the variables that name the manifest and the release that is running. A payload is written to its standard
/// input, pretty-printed with sorted keys; without one it has that of this process. Throws ErrorRecord for a payload
/// that cannot be written.
CommandRun shellClientRun(Platform& platform, const VeskRuntimeDescriptor& runtime, const std::string& script,
                          std::vector<std::string> arguments, const std::optional<JsonValue>& payload);

} // namespace vesk
