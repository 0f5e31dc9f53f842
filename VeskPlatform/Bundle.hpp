#pragma once

#include <optional>
#include <string>

namespace vesk {

/// An application bundle, or the folder of a bare executable. Paths are absolute, without a slash at the end.
struct Bundle {
    std::string path;
    std::optional<std::string> executablePath;
    std::optional<std::string> resourcesPath;
};

} // namespace vesk
