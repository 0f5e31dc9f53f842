#pragma once

#include <string>
#include <string_view>

// Paths as text: nothing here looks at the file system, so links are not followed.

namespace vesk {

/// `path` as it is where it is absolute, less slashes at its end; else from `currentDirectory` on, without the parts
/// "." and "..".
std::string absolutePath(std::string_view path, std::string_view currentDirectory);

/// The folder that an absolute path lies in; "/" for what lies there and for "/" itself.
std::string parentFolder(std::string_view path);

/// An absolute path without empty parts, ".", ".." and a slash at its end.
std::string standardizedPath(std::string_view absolutePath);

/// The last part of a path without a slash at its end; "/" of the root.
std::string lastPathComponent(std::string_view path);

/// What follows the last dot of the last part; empty where there is none, the dot comes first or last, or what follows
/// has a blank in it.
std::string pathExtension(std::string_view path);

} // namespace vesk
