#include "VeskSupport/Utf16.hpp"

#include <cstddef>
#include <cstdint>
#include <unicode/unistr.h>

namespace vesk {

std::u16string utf16Units(std::string_view text) {
    const auto units = icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
    return {units.getBuffer(), static_cast<std::size_t>(units.length())};
}

} // namespace vesk
