#pragma once

#include "VeskPlatform/MediaGeometry.hpp"

namespace vesk {

/// One of the eight ways in which a picture can be turned and mirrored onto upright axes: first mirrored left to right,
/// then turned clockwise in quarters.
struct Orientation {
    bool mirrored = false;
    int quarterTurns = 0;

    bool operator==(const Orientation&) const = default;
    bool swapsAxes() const { return quarterTurns % 2 != 0; }
};

/// Of the values 1 to 8 of Exif's tag 274 (Exif 2.32, section 4.6.4); others are upright.
Orientation orientationOfExif(int value);

/// What a transform does to axes, by the nearest quarter turn.
Orientation orientationOf(const AffineTransform& transform);

} // namespace vesk
