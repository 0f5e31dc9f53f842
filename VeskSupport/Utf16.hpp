#pragma once

#include <string>
#include <string_view>

namespace vesk {

/// The UTF-16 units of UTF-8 `text`; each ill-formed sequence is U+FFFD.
std::u16string utf16Units(std::string_view text);

} // namespace vesk
