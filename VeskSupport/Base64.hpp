#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vesk {

/// The bytes of base64 `text` (RFC 4648, section 4), with or without padding; none where a character is none of the
/// alphabet's.
std::optional<std::string> base64Decoded(std::string_view text);

/// `bytes` as base64url without padding (RFC 4648, section 5).
std::string base64UrlEncoded(std::string_view bytes);

} // namespace vesk
