#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vesk {

/// The folder that `user-dirs.dirs` (xdg-user-dirs(1)) has under a name such as "DOCUMENTS", with `$HOME` as
/// `homeDirectory`. The last of several lines counts. None without a line, or for a relative path.
std::optional<std::string> userDirectory(std::string_view fileText, std::string_view name,
                                         const std::string& homeDirectory);

} // namespace vesk
