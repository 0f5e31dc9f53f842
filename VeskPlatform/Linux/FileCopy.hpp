#pragma once

#include <string>

namespace vesk {

/// Copies by open folders, one step at a time and never through a link, so that a name that is exchanged meanwhile
/// leads nowhere else. The copy is made under a hidden name beside its own, which it gets when it is whole. The
/// contract is that of FileManager::copyItem.
void copyTree(const std::string& path, const std::string& destination);

} // namespace vesk
