#pragma once

#include "VeskPlatform/FileManager.hpp"

#include <string>
#include <string_view>

namespace vesk {

/// Writes a file whole or not at all through NSData. The contract is that of FileManager::writeFile.
void writeWholeFile(const std::string& path, std::string_view bytes, ExistingFile existing);

} // namespace vesk
