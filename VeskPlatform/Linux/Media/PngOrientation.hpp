#pragma once

#include "VeskPlatform/Linux/Media/Orientation.hpp"

#include <string>

namespace vesk {

/// What a PNG's chunk eXIf (PNG 1.5 extensions, section 3.7) says, which FFmpeg passes over; upright where the file is
/// no PNG, has none, or cannot be read.
Orientation orientationOfPng(const std::string& path);

} // namespace vesk
