#pragma once

#include "VeskPlatform/ScreenGeometry.hpp"

#import <CoreGraphics/CoreGraphics.h>

namespace vesk {

// The space of all displays is the same on both sides: points from the top left corner of the main display, downwards.

inline CGPoint cgPoint(const ScreenPoint& point) { return CGPointMake(point.x, point.y); }
inline ScreenPoint screenPoint(const CGPoint& point) { return {.x = point.x, .y = point.y}; }
inline ScreenSize screenSize(const CGSize& size) { return {.width = size.width, .height = size.height}; }

} // namespace vesk
