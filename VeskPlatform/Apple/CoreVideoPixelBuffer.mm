#import "VeskPlatform/Apple/CoreVideoPixelBuffer.hpp"

#import "VeskPlatform/Apple/ImageIOSource.hpp"
#import "VeskPlatform/Apple/QuartzPixels.hpp"

namespace vesk {
namespace {

constexpr CVPixelBufferLockFlags readingAndWriting = 0;

/// Draws into a buffer's memory, which stays locked meanwhile. Core Graphics counts from the bottom.
class QuartzFrameContext : public FrameContext {
public:
    QuartzFrameContext(CFOwned<CGContextRef> context, std::size_t height)
        : context_(std::move(context)), height_(static_cast<double>(height)) {}

    void fill(const MediaRectangle& rectangle, double gray) override {
        const CFOwned<CGColorRef> color(CGColorCreateGenericGray(gray, 1));
        CGContextSetFillColorWithColor(context_.get(), color.get());
        CGContextFillRect(context_.get(), placed(rectangle));
    }

    void draw(const MediaImage& image, const MediaRectangle& rectangle) override {
        CGContextDrawImage(context_.get(), placed(rectangle), dynamic_cast<const QuartzMediaImage&>(image).get());
    }

private:
    CGRect placed(const MediaRectangle& rectangle) const {
        const double bottom = height_ - rectangle.y - rectangle.height;
        return CGRectMake(rectangle.x, bottom, rectangle.width, rectangle.height);
    }

    CFOwned<CGContextRef> context_;
    double height_;
};

} // namespace

NSDictionary<NSString*, id>* imageCompatibility() {
    return @{
        (__bridge NSString*)kCVPixelBufferCGImageCompatibilityKey : @YES,
        (__bridge NSString*)kCVPixelBufferCGBitmapContextCompatibilityKey : @YES,
    };
}

std::shared_ptr<PixelBuffer> CoreVideoPixelBuffer::create(std::size_t width, std::size_t height) {
    CFOwned<CVPixelBufferRef> buffer;
    const CVReturn result = CVPixelBufferCreate(kCFAllocatorDefault, width, height, framePixelFormat,
                                                (__bridge CFDictionaryRef)imageCompatibility(), buffer.out());
    if (result != kCVReturnSuccess || !buffer) return nullptr;
    return std::shared_ptr<PixelBuffer>(new CoreVideoPixelBuffer(std::move(buffer)));
}

bool CoreVideoPixelBuffer::lockBaseAddress() {
    (void)CVPixelBufferLockBaseAddress(get(), readingAndWriting);
    return CVPixelBufferGetBaseAddress(get()) != nullptr;
}

void CoreVideoPixelBuffer::unlockBaseAddress() { (void)CVPixelBufferUnlockBaseAddress(get(), readingAndWriting); }

std::unique_ptr<FrameContext> CoreVideoPixelBuffer::makeContext() {
    const std::size_t width = CVPixelBufferGetWidth(get()), height = CVPixelBufferGetHeight(get());
    const CFOwned<CGColorSpaceRef> colors(CGColorSpaceCreateDeviceRGB());
    CFOwned<CGContextRef> context(CGBitmapContextCreate(CVPixelBufferGetBaseAddress(get()), width, height,
                                                        bitsPerComponent, CVPixelBufferGetBytesPerRow(get()),
                                                        colors.get(), pixelLayout));
    return context ? std::make_unique<QuartzFrameContext>(std::move(context), height) : nullptr;
}

} // namespace vesk
