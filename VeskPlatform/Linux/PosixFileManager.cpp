#include "VeskPlatform/Linux/PosixFileManager.hpp"

#include "VeskPlatform/Linux/PosixPrivateFiles.hpp"

namespace vesk {

void PosixFileManager::createDirectory(const std::string& path) { makeFolders(path, 0777); }

} // namespace vesk
