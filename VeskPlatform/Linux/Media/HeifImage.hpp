#pragma once

#include "VeskPlatform/MediaFramework.hpp"

#include <memory>
#include <string>

namespace vesk {

/// The primary picture of a HEIF file (ISO/IEC 23008-12), through libheif; null where the file is none.
std::unique_ptr<ImageSource> openHeifImage(const std::string& path);

} // namespace vesk
