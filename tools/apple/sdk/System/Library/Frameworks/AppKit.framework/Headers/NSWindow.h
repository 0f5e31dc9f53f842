#pragma once

#import <AppKit/NSGraphics.h>
#import <AppKit/NSResponder.h>

NS_ASSUME_NONNULL_BEGIN

@class NSView;

typedef NS_OPTIONS(NSUInteger, NSWindowStyleMask) {
    NSWindowStyleMaskBorderless = 0,
};

@interface NSWindow : NSResponder
- (instancetype)initWithContentRect:(NSRect)rectangle
                          styleMask:(NSWindowStyleMask)style
                            backing:(NSBackingStoreType)backing
                              defer:(BOOL)isDeferred NS_DESIGNATED_INITIALIZER;
@property(nullable, strong) __kindof NSView* contentView;
@property(getter=isReleasedWhenClosed) BOOL releasedWhenClosed;
- (void)close;
@end

NS_ASSUME_NONNULL_END
