#pragma once

#include "VeskPlatform/Bundle.hpp"

namespace vesk {

/// The bundle that this process runs from. NSBundle knows the programs of Contents/MacOS; one of Contents/Helpers,
/// which it takes for a program without a bundle, belongs to the application around it.
Bundle runningBundle();

} // namespace vesk
