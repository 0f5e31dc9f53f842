#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vesk {

/// A universally unique identifier (RFC 9562). One that is made without bytes is the nil UUID.
class Uuid {
public:
    using Bytes = std::array<std::uint8_t, 16>;

    constexpr Uuid() = default;
    constexpr explicit Uuid(const Bytes& bytes) : bytes_(bytes) {}

    /// Hexadecimal digits of either case in groups of 8, 4, 4, 4 and 12 with hyphens between them; none for anything
    /// else.
    static std::optional<Uuid> parse(std::string_view text);
    /// The UUID of version 4 that random bytes make: six of their bits give way to the version and the variant.
    static Uuid fromRandomBytes(Bytes bytes);

    const Bytes& bytes() const { return bytes_; }
    /// In upper case, as records have it.
    std::string text() const;
    std::string lowercaseText() const;

    auto operator<=>(const Uuid&) const = default;

private:
    Bytes bytes_{};
};

} // namespace vesk
