#pragma once

#include <cstdint>
#include <string>

namespace vesk {

/// What standard input holds until its end. Throws PosixError, EFBIG for more than `maximumBytes`.
std::string readStandardInput(std::uint64_t maximumBytes);

/// The same less one line end at its end, as the text that somebody typed or `echo` wrote. Throws also ErrorRecord for
/// what is no UTF-8: bytes that no text can hold must not be changed on their way.
std::string readTextFromStandardInput(std::uint64_t maximumBytes);

} // namespace vesk
