#pragma once

#include "VeskPlatform/RandomSource.hpp"

namespace vesk {

/// The system's cryptographically secure generator.
class SecurityRandomSource : public RandomSource {
public:
    void fill(std::span<std::uint8_t> bytes) override;
};

} // namespace vesk
