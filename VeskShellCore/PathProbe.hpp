#pragma once

#include "VeskPlatform/FileManager.hpp"

#include <string>

namespace vesk {

/// Reads a little of a file, or of the list of a folder, and throws it away: what counts is whether the system allows
/// it. Throws PosixError.
void tryReading(FileManager& files, const std::string& path, const FileAttributes& attributes);

/// The path with a leading "~" as `homeDirectory`; relative paths and those of other users' homes
/// stay as they are.
std::string expandedTilde(const std::string& path, const std::string& homeDirectory);

} // namespace vesk
