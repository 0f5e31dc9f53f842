#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vesk {

/// A path below a root, without blanks around its parts, empty parts and "."; none for the root itself. Throws
/// ICloudError 400 for an absolute path and for one with a part "..", wherever that would lead. It judges the text
/// alone: links below the root are followed.
std::optional<std::string> normalizeRelativePath(const std::optional<std::string>& path);

/// The name alone where there is no base.
std::string appendRelativePath(const std::optional<std::string>& base, std::string_view name);

} // namespace vesk
