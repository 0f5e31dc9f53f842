#pragma once

#include <cstdint>
#include <string>

namespace vesk {

/// What the kernel calls a process: the first 15 bytes of its program's name. Empty for one that is gone.
std::string processName(std::int32_t processIdentifier);

} // namespace vesk
