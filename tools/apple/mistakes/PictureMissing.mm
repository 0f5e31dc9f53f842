// expects: implicit conversion from nullable pointer 'CGImageRef
// A display that is gone has no picture.
#import <ImageIO/ImageIO.h>

void addDisplay(CGImageDestinationRef destination, CGDirectDisplayID display) {
    CGImageDestinationAddImage(destination, CGDisplayCreateImage(display), nullptr);
}
