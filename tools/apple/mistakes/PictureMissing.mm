// expects: implicit conversion from nullable pointer 'CGImageRef
// A canvas that there is no memory for has no picture.
#import <ImageIO/ImageIO.h>

void addCanvas(CGImageDestinationRef destination, CGContextRef canvas) {
    CGImageDestinationAddImage(destination, CGBitmapContextCreateImage(canvas), nullptr);
}
