#pragma once

#include <string>

namespace vesk {

/// A random UUID (RFC 9562, version 4) in lower case.
std::string randomUuid();

} // namespace vesk
