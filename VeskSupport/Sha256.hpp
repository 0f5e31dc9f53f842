#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace vesk {

/// The SHA-256 digest of bytes (FIPS 180-4).
std::array<std::uint8_t, 32> sha256(std::string_view bytes);

} // namespace vesk
