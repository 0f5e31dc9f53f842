#pragma once

#import <CoreGraphics/CGGeometry.h>

typedef CGPoint NSPoint;
typedef CGSize NSSize;
typedef CGRect NSRect;

static inline NSRect NSMakeRect(CGFloat x, CGFloat y, CGFloat width, CGFloat height) {
    return NSRect{{x, y}, {width, height}};
}
static inline NSSize NSMakeSize(CGFloat width, CGFloat height) { return NSSize{width, height}; }
