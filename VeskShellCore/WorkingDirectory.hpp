#pragma once

#include "VeskPlatform/FileManager.hpp"

#include <string>
#include <string_view>

namespace vesk {

/// The path as it is named from the working directory, which is asked for only where the path is relative: it may be
/// gone. Throws PosixError then.
std::string absolutePath(FileManager& files, std::string_view path);

} // namespace vesk
