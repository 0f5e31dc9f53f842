#pragma once

#include <string>

namespace vesk {

/// Whether a call failed for want of descriptors or memory, which says nothing about the file it was for.
bool isShortage(int errnoValue);

/// Throws what opening a file or folder failed with: a PosixError, which stores that pass over what cannot be read
/// catch, but for a shortage an ErrorRecord of the same words that is none. An answer that leaves out what is there
/// would be wrong then, and a failure is not.
[[noreturn]] void throwOpenFailure(int errnoValue, const std::string& path);

} // namespace vesk
