#pragma once

#include <CoreGraphics/CGBase.h>

/// Takes a point (x, y) to (a·x + c·y + tx, b·x + d·y + ty).
struct CGAffineTransform {
    CGFloat a, b, c, d;
    CGFloat tx, ty;
};
typedef struct CGAffineTransform CGAffineTransform;

static inline CGAffineTransform CGAffineTransformMake(CGFloat a, CGFloat b, CGFloat c, CGFloat d, CGFloat tx,
                                                      CGFloat ty) {
    return CGAffineTransform{a, b, c, d, tx, ty};
}
