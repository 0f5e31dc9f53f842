#include "VeskSupport/Base64.hpp"

#include <array>
#include <cstdint>

namespace vesk {
namespace {

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t foreign = 0xFF;

constexpr std::array<std::uint8_t, 256> makeDigits() {
    std::array<std::uint8_t, 256> digits{};
    digits.fill(foreign);
    for (std::size_t i = 0; i < alphabet.size(); ++i)
        digits[static_cast<unsigned char>(alphabet[i])] = static_cast<std::uint8_t>(i);
    return digits;
}

constexpr auto digits = makeDigits();

} // namespace

std::optional<std::string> base64Decoded(std::string_view text) {
    while (text.ends_with('=')) text.remove_suffix(1);
    std::string bytes;
    bytes.reserve(text.size() / 4 * 3 + 3);
    std::uint32_t bits = 0;
    int held = 0;
    for (const char character : text) {
        const std::uint8_t digit = digits[static_cast<unsigned char>(character)];
        if (digit == foreign) return std::nullopt;
        bits = bits << 6U | digit;
        held += 6;
        if (held < 8) continue;
        held -= 8;
        bytes += static_cast<char>(bits >> static_cast<unsigned>(held) & 0xFFU);
    }
    if (held == 6) return std::nullopt; // one character alone says nothing
    return bytes;
}

std::string base64UrlEncoded(std::string_view bytes) {
    static constexpr std::string_view urlAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_";
    std::string text;
    std::uint32_t bits = 0;
    unsigned held = 0;
    for (const char byte : bytes) {
        bits = bits << 8U | static_cast<unsigned char>(byte);
        for (held += 8; held >= 6; held -= 6) text += urlAlphabet[bits >> (held - 6) & 0x3FU];
    }
    if (held > 0) text += urlAlphabet[bits << (6 - held) & 0x3FU];
    return text;
}

} // namespace vesk
