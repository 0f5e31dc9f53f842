#pragma once

#include <cstdint>
#include <string>

namespace vesk {

/// What standard input holds until its end. Throws PosixError, EFBIG for more than `maximumBytes`.
std::string readStandardInput(std::uint64_t maximumBytes);

} // namespace vesk
