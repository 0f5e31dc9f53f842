#pragma once

#include "VeskPlatform/Bundle.hpp"

#include <string>

namespace vesk {

/// The bundle of an executable: the nearest ancestor named `….app` where the executable lies in its `Contents/MacOS` or
/// `Contents/Helpers`, else the executable's own folder, which has no resources.
Bundle bundleOfExecutable(const std::string& executablePath);

} // namespace vesk
