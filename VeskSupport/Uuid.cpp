#include "VeskSupport/Uuid.hpp"

#include <cstddef>

namespace vesk {
namespace {

constexpr std::size_t textLength = 36;

/// Whether a hyphen stands before this byte.
bool startsGroup(std::size_t byte) { return byte == 4 || byte == 6 || byte == 8 || byte == 10; }

/// Negative for what is no hexadecimal digit.
int valueOfDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

std::string written(const Uuid::Bytes& bytes, std::string_view digits) {
    std::string text;
    text.reserve(textLength);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (startsGroup(i)) text += '-';
        text += digits[bytes[i] >> 4];
        text += digits[bytes[i] & 15];
    }
    return text;
}

} // namespace

std::optional<Uuid> Uuid::parse(std::string_view text) {
    if (text.size() != textLength) return std::nullopt;
    Bytes bytes{};
    std::size_t position = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (startsGroup(i) && text[position++] != '-') return std::nullopt;
        const int high = valueOfDigit(text[position]), low = valueOfDigit(text[position + 1]);
        if (high < 0 || low < 0) return std::nullopt;
        bytes[i] = static_cast<std::uint8_t>(high * 16 + low);
        position += 2;
    }
    return Uuid(bytes);
}

Uuid Uuid::fromRandomBytes(Bytes bytes) {
    bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0F) | 0x40);
    bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3F) | 0x80);
    return Uuid(bytes);
}

std::string Uuid::text() const { return written(bytes_, "0123456789ABCDEF"); }

std::string Uuid::lowercaseText() const { return written(bytes_, "0123456789abcdef"); }

} // namespace vesk
