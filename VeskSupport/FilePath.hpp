#pragma once

#include <string>
#include <string_view>

// Paths as text: nothing here looks at the file system, so links are not followed.

namespace vesk {

/// `path` from the absolute `currentDirectory` where it is relative.
std::string absolutePath(std::string_view path, std::string_view currentDirectory);

/// An absolute path without empty components, ".", "..", or a slash at its end; "/" above which nothing is.
std::string standardizedPath(std::string_view absolutePath);

/// The last component of a standardized path; "/" of the root.
std::string lastPathComponent(std::string_view path);

/// All but the last component of a standardized path; "/" of the root.
std::string parentPath(std::string_view path);

/// What follows the last dot of the last component; empty where there is none, the dot comes first or last, or what
/// follows has a blank in it.
std::string pathExtension(std::string_view path);

} // namespace vesk
