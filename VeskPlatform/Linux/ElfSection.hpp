#pragma once

#include <optional>
#include <string>

namespace vesk {

/// The bytes of a section of an ELF file, 32 or 64 bits, either byte order. None where the file cannot be read, is no
/// ELF file or has no section of that name.
std::optional<std::string> elfSection(const std::string& path, const std::string& name);

} // namespace vesk
