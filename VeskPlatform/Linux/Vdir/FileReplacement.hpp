#pragma once

#include <string>
#include <string_view>

namespace vesk::vdir {

/// Makes a new file, whole or not at all, also across a kill or a power cut: the bytes go to a file without a name,
/// are flushed, get their name, and the folder is flushed. Throws PosixError, EEXIST where the name is taken.
void createFileDurably(const std::string& folder, const std::string& name, std::string_view bytes);

} // namespace vesk::vdir
