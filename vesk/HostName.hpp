#pragma once

#include <optional>
#include <string>

namespace vesk {

/// The name that this machine has; none where the system does not tell.
std::optional<std::string> hostName();

} // namespace vesk
