#pragma once

#import <CoreGraphics/CGGeometry.h>
#import <Foundation/NSValue.h>

typedef CGPoint NSPoint;
typedef CGSize NSSize;
typedef CGRect NSRect;

static inline NSRect NSMakeRect(CGFloat x, CGFloat y, CGFloat width, CGFloat height) {
    return NSRect{{x, y}, {width, height}};
}
static inline NSSize NSMakeSize(CGFloat width, CGFloat height) { return NSSize{width, height}; }

NS_ASSUME_NONNULL_BEGIN

@interface NSValue (NSValueGeometryExtensions)
+ (NSValue*)valueWithSize:(NSSize)size;
@end

NS_ASSUME_NONNULL_END
