#pragma once

#include "VeskPlatform/FileManager.hpp"

#include <string>
#include <string_view>

namespace vesk {

/// The standardized path of a file that is to be written anew, from the working directory on where it is relative.
/// Throws PosixError, with EINVAL where the path has a null byte, since the system would write to what stands before
/// it, and where a pipe, a socket or a device is, which the file would take the place of.
std::string outputFilePath(FileManager& files, std::string_view path);

} // namespace vesk
