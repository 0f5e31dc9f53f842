// expects: requires a bridged cast
// Who owns an object that crosses over to Core Foundation has to be said.
#import <Foundation/Foundation.h>
#import <ImageIO/ImageIO.h>

CGImageSourceRef openPicture(NSURL* url) { return CGImageSourceCreateWithURL((CFURLRef)url, nullptr); }
