#pragma once

#include "VeskPlatform/FileManager.hpp"
#include "VeskShellCore/ICloudModels.hpp"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vesk {

/// The first `limit` items of a folder that are not hidden, in the system's order. Reads no further than that. Names
/// that are not UTF-8 have U+FFFD for what is not. Throws ICloudError with the system's number where the folder cannot
/// be opened.
std::vector<CapabilityICloudEntry> listDirectoryEntries(FileManager& files, const std::string& path,
                                                        const std::optional<std::string>& baseRelativePath,
                                                        std::size_t limit);

/// Folders before files, each by name without regard to case, in the order of a locale (an ICU identifier).
void sortEntries(std::vector<CapabilityICloudEntry>& entries, const std::string& locale);

/// How many items lie below a folder at any depth, without hidden ones and what lies in those. No link is followed; a
/// folder that cannot be read counts as one without items.
std::int64_t countItems(FileManager& files, const std::string& folder);

} // namespace vesk
