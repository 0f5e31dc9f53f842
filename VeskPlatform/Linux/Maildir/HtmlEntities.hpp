#pragma once

#include <optional>
#include <string_view>

namespace vesk::maildir {

/// The character that HTML calls `name`, such as "eacute"; case counts.
std::optional<char32_t> namedCharacter(std::string_view name);

} // namespace vesk::maildir
