#include "VeskPlatform/Linux/Vcard/CardValues.hpp"

#include "VeskPlatform/Linux/Vcard/CharacterSets.hpp"
#include "VeskSupport/Text.hpp"

#include <cstdint>

namespace vesk::vcard {
namespace {

int hexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

/// Bytes written as `mark` and two hexadecimal digits.
std::string hexDecoded(std::string_view text, char mark) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const int high = text[i] == mark && i + 2 < text.size() ? hexDigit(text[i + 1]) : -1;
        const int low = high >= 0 ? hexDigit(text[i + 2]) : -1;
        result += low < 0 ? text[i] : static_cast<char>(high * 16 + low);
        if (low >= 0) i += 2;
    }
    return result;
}

int base64Digit(char c) {
    if (c >= 'A' && c <= 'Z') return c - 'A';
    if (c >= 'a' && c <= 'z') return c - 'a' + 26;
    if (c >= '0' && c <= '9') return c - '0' + 52;
    if (c == '+' || c == '-') return 62;
    return c == '/' || c == '_' ? 63 : -1;
}

/// CR LF and CR as LF.
std::string withLineFeeds(std::string text) {
    if (text.find('\r') == std::string::npos) return text;
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') continue;
        result += text[i] == '\r' ? '\n' : text[i];
    }
    return result;
}

/// The value as text that still has its escapes. A quoted-printable one is decoded piece by piece, behind the escapes:
/// the separators that it encodes belong to the text.
std::string escapedText(const CardProperty& property) {
    if (property.isQuotedPrintable()) return property.value;
    if (property.isBase64()) return utf8Of(base64Decoded(property.value), property.characterSet());
    return utf8Of(property.value, property.characterSet());
}

std::string pieceBytes(const CardProperty& property, std::string_view piece, CardVersion version) {
    std::string text = unescapedValue(piece, version);
    if (property.isQuotedPrintable()) text = utf8Of(quotedPrintableDecoded(text), property.characterSet());
    return withLineFeeds(std::move(text));
}

std::vector<std::string> listOf(const CardProperty& property, std::string_view escaped, CardVersion version) {
    std::vector<std::string> pieces{std::string(escaped)};
    if (version != CardVersion::v21) pieces = splitValue(escaped, ',');
    for (std::string& piece : pieces) piece = repairedUtf8(pieceBytes(property, piece, version));
    if (pieces.size() == 1) return pieces;
    for (std::string& piece : pieces) piece = std::string(trimmed(piece));
    std::erase_if(pieces, [](const std::string& piece) { return piece.empty(); });
    return pieces;
}

} // namespace

std::vector<std::string> splitValue(std::string_view value, char separator) {
    std::vector<std::string> pieces;
    std::size_t begin = 0;
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (value[i] == '\\') {
            ++i;
        } else if (value[i] == separator) {
            pieces.emplace_back(value.substr(begin, i - begin));
            begin = i + 1;
        }
    }
    pieces.emplace_back(value.substr(begin));
    return pieces;
}

std::string unescapedValue(std::string_view value, CardVersion version) {
    const std::string_view escapable = version == CardVersion::v21 ? ";" : "nN,;:\\";
    std::string result;
    result.reserve(value.size());
    for (std::size_t i = 0; i < value.size(); ++i) {
        const bool isEscape =
            value[i] == '\\' && i + 1 < value.size() && escapable.find(value[i + 1]) != std::string_view::npos;
        if (isEscape) ++i;
        result += isEscape && (value[i] == 'n' || value[i] == 'N') ? '\n' : value[i];
    }
    return result;
}

std::string valueBytes(const CardProperty& property, CardVersion version) {
    return pieceBytes(property, escapedText(property), version);
}

std::string valueText(const CardProperty& property, CardVersion version) {
    return repairedUtf8(valueBytes(property, version));
}

std::vector<std::string> componentBytes(const CardProperty& property, CardVersion version) {
    std::vector<std::string> components = splitValue(escapedText(property), ';');
    for (std::string& component : components) component = pieceBytes(property, component, version);
    return components;
}

std::vector<std::string> componentTexts(const CardProperty& property, CardVersion version) {
    std::vector<std::string> components = componentBytes(property, version);
    for (std::string& component : components) component = repairedUtf8(component);
    return components;
}

std::vector<std::string> listTexts(const CardProperty& property, CardVersion version) {
    return listOf(property, escapedText(property), version);
}

std::vector<std::string> listTexts(const CardProperty& property, CardVersion version, std::size_t component) {
    const std::vector<std::string> components = splitValue(escapedText(property), ';');
    if (component >= components.size()) return {};
    return listOf(property, components[component], version);
}

std::string percentDecoded(std::string_view text) { return hexDecoded(text, '%'); }

std::string base64Decoded(std::string_view text) {
    std::string result;
    std::uint32_t bits = 0;
    int count = 0;
    for (const char c : text) {
        const int digit = base64Digit(c);
        if (digit < 0) continue;
        bits = bits << 6 | static_cast<std::uint32_t>(digit);
        count += 6;
        if (count < 8) continue;
        count -= 8;
        result += static_cast<char>(bits >> count & 0xFF);
    }
    return result;
}

std::string quotedPrintableDecoded(std::string_view text) { return hexDecoded(text, '='); }

} // namespace vesk::vcard
