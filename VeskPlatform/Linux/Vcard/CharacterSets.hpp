#pragma once

#include <string>
#include <string_view>

namespace vesk::vcard {

/// `bytes` in the character set of that IANA name (or an alias that ICU knows) as UTF-8. With no name, an unknown one,
/// UTF-8 or ASCII, `bytes` as they are, well-formed or not.
std::string utf8Of(std::string_view bytes, std::string_view characterSet);

} // namespace vesk::vcard
