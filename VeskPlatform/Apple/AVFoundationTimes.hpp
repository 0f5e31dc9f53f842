#pragma once

#import <CoreGraphics/CoreGraphics.h>
#import <CoreMedia/CoreMedia.h>

#include "VeskPlatform/MediaGeometry.hpp"

#include <optional>

// Times and shapes of the media ports and of the frameworks, which mean the same.

namespace vesk {

inline CMTime cmTime(const MediaTime& time) { return CMTimeMake(time.value, time.timescale); }

/// None where it is not valid or no number.
inline std::optional<MediaTime> mediaTime(const CMTime& time) {
    if (!CMTIME_IS_VALID(time) || !CMTIME_IS_NUMERIC(time) || time.timescale <= 0) return std::nullopt;
    return MediaTime{.value = time.value, .timescale = time.timescale};
}

inline CMTimeRange cmTimeRange(const MediaTime& start, const MediaTime& duration) {
    return CMTimeRangeMake(cmTime(start), cmTime(duration));
}

inline CGSize cgSize(const MediaSize& size) { return CGSizeMake(size.width, size.height); }
inline MediaSize mediaSize(const CGSize& size) { return {.width = size.width, .height = size.height}; }

inline CGAffineTransform cgTransform(const AffineTransform& transform) {
    return CGAffineTransformMake(transform.a, transform.b, transform.c, transform.d, transform.tx, transform.ty);
}
inline AffineTransform affineTransform(const CGAffineTransform& transform) {
    return {
        .a = transform.a, .b = transform.b, .c = transform.c, .d = transform.d, .tx = transform.tx, .ty = transform.ty};
}

} // namespace vesk
