#include "VeskPlatform/Portable/KeychainNames.hpp"

#include "VeskSupport/Text.hpp"

namespace vesk {

bool isKeychainName(const std::string& text) { return text.find('\0') == std::string::npos && isWellFormedUtf8(text); }

} // namespace vesk
