#pragma once

#include <string>

namespace vesk {

/// The words of an HTTP status (RFC 9110, section 15, and the registry of status codes); for one without, those of its
/// class.
std::string standardStatusText(int status);

} // namespace vesk
