// links: expects: undefined symbol: _?kCVPixelBufferPixelFormatKey
// The compiler takes any constant that is declared; the list of symbols does not have this one.
#import <CoreVideo/CoreVideo.h>

extern "C" const CFStringRef kCVPixelBufferPixelFormatKey;

int main() { return kCVPixelBufferPixelFormatKey == kCVPixelBufferPixelFormatTypeKey; }
