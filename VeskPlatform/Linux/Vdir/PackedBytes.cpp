#include "VeskPlatform/Linux/Vdir/PackedBytes.hpp"

#include <algorithm>

namespace vesk::vdir {

std::uint64_t checksum(std::string_view bytes) {
    std::uint64_t hash = 0x9E3779B97F4A7C15 ^ bytes.size();
    for (std::size_t i = 0; i < bytes.size(); i += 8) {
        std::uint64_t word = 0;
        std::memcpy(&word, bytes.data() + i, std::min<std::size_t>(8, bytes.size() - i));
        hash = (hash ^ word) * 0xFF51AFD7ED558CCD;
        hash ^= hash >> 32;
    }
    return hash;
}

} // namespace vesk::vdir
