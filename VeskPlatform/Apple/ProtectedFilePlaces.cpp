#include "VeskPlatform/Apple/ProtectedFilePlaces.hpp"

namespace vesk {

std::vector<ProtectedPlace> ProtectedFilePlaces::protectedPlaces(const std::string& homeDirectory) {
    std::vector<ProtectedPlace> places;
    for (const char* name :
         {"Library/Application Support/com.apple.TCC/TCC.db", "Library/Mail", "Library/Messages", "Library/Safari"})
        places.push_back({.path = homeDirectory + "/" + name, .label = std::string("~/") + name});
    return places;
}

std::vector<std::string> ProtectedFilePlaces::guardedFolders(const std::string& homeDirectory) {
    std::vector<std::string> folders;
    for (const char* name : {"Desktop", "Documents", "Downloads", cloudDriveInHome})
        folders.push_back(homeDirectory + "/" + name);
    return folders;
}

} // namespace vesk
