#include "VeskPlatform/Linux/DriveCloudAccount.hpp"

#include "VeskPlatform/Linux/PosixPrivateFiles.hpp"
#include "VeskPlatform/Linux/UserFolders.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <filesystem>

namespace vesk {

namespace {

/// Whether an identifier is the name of one folder and leads nowhere else.
bool isFolderName(const std::string& name) {
    return !name.empty() && name != "." && name != ".." && name.find('/') == std::string::npos
           && name.find('\0') == std::string::npos;
}

} // namespace

bool DriveCloudAccount::hasIdentityToken() {
    const auto drive = drivePath();
    std::error_code error;
    return drive && std::filesystem::is_directory(*drive, error);
}

std::optional<std::string> DriveCloudAccount::drivePath() { return cloudDriveFolder(environment_); }

std::optional<std::string> DriveCloudAccount::containerPath(const std::optional<std::string>& identifier) {
    const std::string name = identifier.value_or("default");
    const std::string folder = containersFolder(environment_);
    if (!hasIdentityToken() || folder.empty() || !isFolderName(name)) return std::nullopt;
    std::string path = folder + "/" + name;
    try {
        makeFolders(path, 0700);
        return path;
    } catch (const PosixError&) { // a container that cannot be made cannot be reached
        return std::nullopt;
    }
}

} // namespace vesk
