#pragma once

#include "VeskPlatform/Linux/Vcard/CardLines.hpp"

#include <string>
#include <string_view>
#include <vector>

namespace vesk::vcard {

// Values as people mean them: transfer encoding, character set and escapes taken off. Line breaks are LF.

/// The pieces of a value between the separators that are not escaped, each with its escapes. Never empty.
std::vector<std::string> splitValue(std::string_view value, char separator);

/// A value or a piece of one without its escapes: `\n \N \, \; \: \\` in 3.0 and 4.0, in 2.1 `\;` alone.
std::string unescapedValue(std::string_view value, CardVersion version);

/// The whole value as one text, in its own bytes where no character set is told: not always well-formed.
std::string valueBytes(const CardProperty& property, CardVersion version);

/// The same as well-formed UTF-8.
std::string valueText(const CardProperty& property, CardVersion version);

/// The components between semicolons (N, ORG, ADR), in their own bytes as above.
std::vector<std::string> componentBytes(const CardProperty& property, CardVersion version);
/// The same as well-formed UTF-8.
std::vector<std::string> componentTexts(const CardProperty& property, CardVersion version);

/// The list of texts (NICKNAME, or component `index` of N) that `separator` divides in 3.0 and 4.0; 2.1 has no lists.
/// Texts of a list are trimmed, empty ones left out; a single text is as it stands.
std::vector<std::string> listTexts(const CardProperty& property, CardVersion version);
std::vector<std::string> listTexts(const CardProperty& property, CardVersion version, std::size_t component);

/// `text` with its percent-encoded bytes decoded (RFC 3986, section 2.1).
std::string percentDecoded(std::string_view text);

/// The bytes of base64 text; what is not of its alphabet is passed over.
std::string base64Decoded(std::string_view text);

/// The bytes of quoted-printable text (RFC 2045, section 6.7) without soft line breaks; a stray '=' stands for itself.
std::string quotedPrintableDecoded(std::string_view text);

} // namespace vesk::vcard
