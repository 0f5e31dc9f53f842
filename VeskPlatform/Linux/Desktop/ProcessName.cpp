#include "VeskPlatform/Linux/Desktop/ProcessName.hpp"

#include <fstream>

namespace vesk {

std::string processName(std::int32_t processIdentifier) {
    std::ifstream file("/proc/" + std::to_string(processIdentifier) + "/comm");
    std::string name;
    std::getline(file, name);
    return name;
}

} // namespace vesk
