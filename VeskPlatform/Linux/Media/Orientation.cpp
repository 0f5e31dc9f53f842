#include "VeskPlatform/Linux/Media/Orientation.hpp"

#include <array>
#include <cmath>

namespace vesk {

Orientation orientationOfExif(int value) {
    static constexpr std::array<Orientation, 8> orientations{
        {{false, 0}, {true, 0}, {false, 2}, {true, 2}, {true, 3}, {false, 1}, {true, 1}, {false, 3}}};
    if (value < 1 || value > static_cast<int>(orientations.size())) return {};
    return orientations[static_cast<std::size_t>(value) - 1];
}

Orientation orientationOf(const AffineTransform& transform) {
    const bool mirrored = transform.a * transform.d - transform.b * transform.c < 0;
    // Where the picture's right points to; mirroring first has turned it around.
    const double x = mirrored ? -transform.a : transform.a, y = mirrored ? -transform.b : transform.b;
    const bool isHorizontal = std::abs(x) >= std::abs(y);
    const int turns = isHorizontal ? (x >= 0 ? 0 : 2) : (y >= 0 ? 1 : 3);
    return {.mirrored = mirrored, .quarterTurns = turns};
}

} // namespace vesk
