#pragma once

#include "VeskPlatform/FilePlaces.hpp"

namespace vesk {

/// The folder of the user's iCloud Drive, from the home directory on.
inline constexpr const char* cloudDriveInHome = "Library/Mobile Documents/com~apple~CloudDocs";

/// What macOS lets only programs with Full Disk Access read, and the folders for which it asks one by one.
class ProtectedFilePlaces : public FilePlaces {
public:
    std::vector<ProtectedPlace> protectedPlaces(const std::string& homeDirectory) override;
    std::vector<std::string> guardedFolders(const std::string& homeDirectory) override;
};

} // namespace vesk
