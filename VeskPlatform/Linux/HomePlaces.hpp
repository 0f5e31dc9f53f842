#pragma once

#include "VeskPlatform/FilePlaces.hpp"

namespace vesk {

class Environment;
class FileReader;

/// What a sandbox or a security module may hide of a home folder: keyrings, mail and browser profiles. Guarded are the
/// user's desktop, documents and downloads (xdg-user-dirs(1); "Desktop", "Documents" and "Downloads" without an entry)
/// and the drive that VESK_CLOUD_DRIVE names. A folder that is switched off, which is to say set to the home folder, is
/// not guarded.
class HomePlaces : public FilePlaces {
public:
    HomePlaces(Environment& environment, FileReader& files) : environment_(environment), files_(files) {}

    std::vector<ProtectedPlace> protectedPlaces(const std::string& homeDirectory) override;
    std::vector<std::string> guardedFolders(const std::string& homeDirectory) override;

private:
    std::string userDirectories(const std::string& homeDirectory);

    Environment& environment_;
    FileReader& files_;
};

} // namespace vesk
