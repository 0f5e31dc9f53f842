#pragma once

#include "VeskPlatform/Platform.hpp"

#include <string>

namespace vesk {

/// Whether the assistant lives, as JSON.
std::string runLiveness(Platform& platform);

} // namespace vesk
