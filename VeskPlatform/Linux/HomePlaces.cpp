#include "VeskPlatform/Linux/HomePlaces.hpp"

#include "VeskPlatform/Environment.hpp"
#include "VeskPlatform/FileReader.hpp"
#include "VeskPlatform/Linux/UserDirectories.hpp"
#include "VeskPlatform/Linux/UserFolders.hpp"
#include "VeskSupport/ErrorRecord.hpp"
#include "VeskSupport/FilePath.hpp"

#include <array>
#include <utility>

namespace vesk {

std::vector<ProtectedPlace> HomePlaces::protectedPlaces(const std::string& homeDirectory) {
    std::vector<ProtectedPlace> places;
    for (const char* name : {"/.local/share/keyrings", "/.thunderbird", "/.mozilla", "/.local/share/evolution"})
        places.push_back({.path = homeDirectory + name, .label = std::string("~") + name});
    return places;
}

std::vector<std::string> HomePlaces::guardedFolders(const std::string& homeDirectory) {
    static constexpr std::array<std::pair<const char*, const char*>, 3> directories{
        {{"DESKTOP", "/Desktop"}, {"DOCUMENTS", "/Documents"}, {"DOWNLOAD", "/Downloads"}}};
    const std::string home = standardizedPath(homeDirectory);
    const std::string text = userDirectories(homeDirectory);
    std::vector<std::string> folders;
    for (const auto& [name, usual] : directories) {
        std::string folder = userDirectory(text, name, homeDirectory).value_or(homeDirectory + usual);
        if (standardizedPath(folder) != home) folders.push_back(std::move(folder));
    }
    if (auto drive = cloudDriveFolder(environment_)) folders.push_back(std::move(*drive));
    return folders;
}

/// The text of the file that lists them; empty where there is none, or none that can be read.
std::string HomePlaces::userDirectories(const std::string& homeDirectory) {
    constexpr std::uint64_t mostBytes = 1 << 20;
    const auto configuration = environment_.value("XDG_CONFIG_HOME");
    const bool isNamed = configuration && configuration->starts_with('/');
    try {
        return files_.contents((isNamed ? *configuration : homeDirectory + "/.config") + "/user-dirs.dirs", mostBytes);
    } catch (const PosixError&) {
        return {};
    }
}

} // namespace vesk
