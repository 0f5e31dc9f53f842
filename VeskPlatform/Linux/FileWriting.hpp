#pragma once

#include "VeskPlatform/FileManager.hpp"

#include <string>
#include <string_view>

namespace vesk {

/// Writes a file without a name, or under a hidden one beside its own, flushes it and gives it its name; whatever
/// fails, the old file stays. The contract is that of FileManager::writeFile. Mounted drives that know neither renaming
/// without replacing nor hard links are looked at just before the renaming instead.
void writeWholeFile(const std::string& path, std::string_view bytes, ExistingFile existing);

} // namespace vesk
