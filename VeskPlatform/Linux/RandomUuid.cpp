#include "VeskPlatform/Linux/RandomUuid.hpp"

#include "VeskPlatform/Linux/SystemRandomSource.hpp"

namespace vesk {

std::string randomUuid() {
    SystemRandomSource source;
    return randomUuid(source).lowercaseText();
}

} // namespace vesk
