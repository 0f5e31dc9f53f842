#pragma once

#include "VeskPlatform/MediaGeometry.hpp"

// Where pictures and clips lie on the frame of a reel, and the times of its timeline.

namespace vesk {

/// `first`, then `second`.
AffineTransform concatenated(const AffineTransform& first, const AffineTransform& second);

/// The smallest upright rectangle around what the transform makes of `rectangle`.
MediaRectangle applied(const AffineTransform& transform, const MediaRectangle& rectangle);

/// The rectangle of a picture that is as large as the frame allows in its own proportions, in the middle.
MediaRectangle letterboxed(const MediaSize& image, const MediaSize& renderSize);

/// Turns a clip upright, makes it as large as the frame allows in its own proportions and puts it in the middle. A clip
/// without a size gets the identity.
AffineTransform aspectFitTransform(const MediaSize& naturalSize, const AffineTransform& preferred,
                                   const MediaSize& renderSize);

/// Exact where a common timescale is at hand (it fits 31 bits), else in the largest timescale: the rule by which media
/// frameworks add times, so that a piece of a timeline ends where the next begins.
MediaTime sum(const MediaTime& first, const MediaTime& second);

double seconds(const MediaTime& time);

} // namespace vesk
