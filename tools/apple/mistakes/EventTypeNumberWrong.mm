// expects: static assertion failed
// The port's numbers are compared with the system's own.
#import <CoreGraphics/CoreGraphics.h>

static_assert(kCGEventRightMouseDown == 4);
