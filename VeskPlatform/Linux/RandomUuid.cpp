#include "VeskPlatform/Linux/RandomUuid.hpp"

#include <cstdint>
#include <cstdio>
#include <random>

namespace vesk {

std::string randomUuid() {
    std::random_device source;
    std::uint32_t words[4];
    for (std::uint32_t& word : words) word = source();
    words[1] = (words[1] & 0xFFFF0FFF) | 0x00004000;
    words[2] = (words[2] & 0x3FFFFFFF) | 0x80000000;
    char text[37];
    std::snprintf(text, sizeof text, "%08x-%04x-%04x-%04x-%04x%08x", words[0], words[1] >> 16, words[1] & 0xFFFF,
                  words[2] >> 16, words[2] & 0xFFFF, words[3]);
    return text;
}

} // namespace vesk
