#pragma once

#include "VeskPlatform/RandomSource.hpp"

namespace vesk {

/// getrandom(2).
class SystemRandomSource : public RandomSource {
public:
    void fill(std::span<std::uint8_t> bytes) override;
};

} // namespace vesk
