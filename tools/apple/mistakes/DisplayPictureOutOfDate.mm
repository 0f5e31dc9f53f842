// expects: 'CGDisplayCreateImage' is deprecated: first deprecated in macOS
// What the system gives up is used knowingly or not at all.
#import <CoreGraphics/CoreGraphics.h>

size_t widthOf(CGDirectDisplayID display) { return CGImageGetWidth(CGDisplayCreateImage(display)); }
