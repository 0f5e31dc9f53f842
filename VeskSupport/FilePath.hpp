#pragma once

#include <string>
#include <string_view>

namespace vesk {

/// `path` as it is where it is absolute, less slashes at its end; else from `currentDirectory` on, without the parts
/// "." and "..".
std::string absolutePath(std::string_view path, std::string_view currentDirectory);

/// The folder that an absolute path lies in; "/" for what lies there and for "/" itself.
std::string parentFolder(std::string_view path);

} // namespace vesk
