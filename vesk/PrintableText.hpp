#pragma once

#include <string>

namespace vesk {

/// The text as a terminal may have it: control characters become blanks, so that none can move the cursor or change
/// what was shown before, and ill-formed UTF-8 becomes U+FFFD.
std::string printable(const std::string& text);

} // namespace vesk
