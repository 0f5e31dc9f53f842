#include "VeskPlatform/Apple/QuartzBitmapContext.hpp"

#include "VeskPlatform/Apple/QuartzImage.hpp"
#include "VeskPlatform/Apple/QuartzPixels.hpp"

namespace vesk {

namespace {

constexpr auto replacing = static_cast<CGBlendMode>(17);
static_assert(replacing == kCGBlendModeCopy);

} // namespace

std::unique_ptr<QuartzBitmapContext> QuartzBitmapContext::create(std::size_t width, std::size_t height) {
    const CFOwned<CGColorSpaceRef> colors(CGColorSpaceCreateDeviceRGB());
    CFOwned<CGContextRef> context(
        CGBitmapContextCreate(nullptr, width, height, bitsPerComponent, 0, colors.get(), pixelLayout));
    if (!context) return nullptr;
    CGContextSetBlendMode(context.get(), replacing);
    CGContextTranslateCTM(context.get(), 0, static_cast<CGFloat>(height));
    CGContextScaleCTM(context.get(), 1, -1);
    return std::unique_ptr<QuartzBitmapContext>(new QuartzBitmapContext(std::move(context)));
}

void QuartzBitmapContext::draw(const ScreenImage& image, const ScreenRectangle& rectangle) {
    CGContextSaveGState(context_.get());
    // In a space that is turned over, a picture stands on its head unless it is turned back.
    CGContextTranslateCTM(context_.get(), rectangle.x, rectangle.y + rectangle.height);
    CGContextScaleCTM(context_.get(), 1, -1);
    CGContextDrawImage(context_.get(), CGRectMake(0, 0, rectangle.width, rectangle.height),
                       dynamic_cast<const QuartzImage&>(image).get());
    CGContextRestoreGState(context_.get());
}

std::unique_ptr<ScreenImage> QuartzBitmapContext::makeImage() {
    CFOwned<CGImageRef> image(CGBitmapContextCreateImage(context_.get()));
    return image ? std::make_unique<QuartzImage>(std::move(image)) : nullptr;
}

} // namespace vesk
