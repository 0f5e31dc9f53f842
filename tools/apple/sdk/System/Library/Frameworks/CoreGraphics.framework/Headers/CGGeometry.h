#pragma once

#include <CoreFoundation/CoreFoundation.h>

struct CGPoint {
    CGFloat x;
    CGFloat y;
};
typedef struct CGPoint CGPoint;

struct CGSize {
    CGFloat width;
    CGFloat height;
};
typedef struct CGSize CGSize;

struct CGRect {
    CGPoint origin;
    CGSize size;
};
typedef struct CGRect CGRect;

static inline CGPoint CGPointMake(CGFloat x, CGFloat y) { return CGPoint{x, y}; }
static inline CGSize CGSizeMake(CGFloat width, CGFloat height) { return CGSize{width, height}; }
static inline CGRect CGRectMake(CGFloat x, CGFloat y, CGFloat width, CGFloat height) {
    return CGRect{{x, y}, {width, height}};
}

CF_EXPORT bool CGRectIsNull(CGRect rectangle);
