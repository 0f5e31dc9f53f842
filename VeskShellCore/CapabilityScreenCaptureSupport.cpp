#include "VeskShellCore/CapabilityScreenCaptureSupport.hpp"

#include "VeskPlatform/Consent.hpp"
#include "VeskPlatform/Desktop.hpp"
#include "VeskPlatform/Displays.hpp"
#include "VeskPlatform/FileManager.hpp"
#include "VeskPlatform/ScreenImages.hpp"
#include "VeskShellCore/DesktopBounds.hpp"
#include "VeskShellCore/NativeControlError.hpp"
#include "VeskShellCore/ShellDebugLogger.hpp"
#include "VeskShellCore/WorkingDirectory.hpp"
#include "VeskSupport/FilePath.hpp"

#include <cmath>
#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace vesk::CapabilityScreenCaptureSupport {
namespace {

/// A display's place in points and its picture in pixels, which need not be as many.
struct DisplaySnapshot {
    ScreenRectangle bounds;
    std::unique_ptr<ScreenImage> image;
};

struct Canvas {
    ScreenRectangle space;
    std::size_t width = 0, height = 0;
};

void note(Platform& platform, const std::string& event) {
    ShellDebugLogger::log(platform, [&] { return "screen-capture " + event; });
}

template <class Number> std::string sized(const std::string& event, Number width, Number height) {
    return event + " width=" + std::to_string(width) + " height=" + std::to_string(height);
}

[[noreturn]] void failCapture(Platform& platform, const std::string& event, const char* description) {
    note(platform, "failed " + event);
    throw NativeControlError(78, description);
}

constexpr const char* captureFailed = "Unable to capture the current screen.";

void assertScreenCaptureGranted(Platform& platform) {
    if (platform.consent().preflightScreenCapture()) return;
    note(platform, "blocked reason=screen_recording_not_granted");
    throw NativeControlError(77, "Screen recording has not been granted to Vesk.");
}

std::vector<DisplayIdentifier> activeDisplays(Platform& platform, Displays& displays) {
    const auto count = displays.count();
    if (!count) throw NativeControlError(78, "Unable to enumerate active displays for screenshot capture.");
    note(platform, "displays enumerated count=" + std::to_string(*count));
    if (*count == 0) failCapture(platform, "stage=enumerate_displays reason=empty", captureFailed);
    auto active = displays.list(*count);
    if (!active) failCapture(platform, "stage=load_displays", "Unable to load active displays for screenshot capture.");
    return *std::move(active);
}

/// All displays or a failure: half a desktop would pass for the whole.
std::vector<DisplaySnapshot> captureDisplays(Platform& platform, Displays& displays) {
    std::vector<DisplaySnapshot> snapshots;
    for (const DisplayIdentifier display : activeDisplays(platform, displays)) {
        const ScreenRectangle bounds = displays.bounds(display);
        auto image = displays.capture(display);
        if (!image) failCapture(platform, "stage=capture_display display=" + std::to_string(display), captureFailed);
        snapshots.push_back({bounds, std::move(image)});
    }
    if (snapshots.empty()) failCapture(platform, "stage=capture_displays reason=empty_snapshots", captureFailed);
    return snapshots;
}

Canvas canvasFor(Platform& platform, const std::vector<DisplaySnapshot>& snapshots) {
    std::vector<ScreenRectangle> places;
    for (const DisplaySnapshot& snapshot : snapshots) places.push_back(snapshot.bounds);
    const ScreenRectangle space = unionOf(places).value_or(ScreenRectangle{});
    const double width = std::ceil(space.width), height = std::ceil(space.height);
    if (width < 1 || height < 1)
        failCapture(
            platform,
            sized("stage=compose reason=invalid_bounds", static_cast<long long>(width), static_cast<long long>(height)),
            captureFailed);
    return {space, static_cast<std::size_t>(width), static_cast<std::size_t>(height)};
}

/// The pixels count from the bottom of the canvas, and the space of the displays is turned over at its own exact
/// height; so where the canvas is higher by a part of a pixel, all of them lie lower by that part.
ScreenRectangle placeOn(const Canvas& canvas, const ScreenRectangle& bounds) {
    const double lower = static_cast<double>(canvas.height) - canvas.space.height;
    return {bounds.x - canvas.space.x, bounds.y - canvas.space.y + lower, bounds.width, bounds.height};
}

std::unique_ptr<ScreenImage> captureDesktopImageFallback(Platform& platform, Desktop& desktop) {
    const std::vector<DisplaySnapshot> snapshots = captureDisplays(platform, desktop.displays());
    const Canvas canvas = canvasFor(platform, snapshots);
    const auto context = desktop.screenImages().createContext(canvas.width, canvas.height);
    if (!context)
        failCapture(platform, sized("stage=create_context", canvas.width, canvas.height),
                    "Unable to compose the current screen image.");
    for (const DisplaySnapshot& snapshot : snapshots) context->draw(*snapshot.image, placeOn(canvas, snapshot.bounds));
    auto image = context->makeImage();
    if (!image) failCapture(platform, "stage=make_image", "Unable to finalize the current screen image.");
    return image;
}

void writePng(Platform& platform, ScreenImages& images, const std::string& path, const ScreenImage& image) {
    const auto destination = images.createPng(path);
    if (!destination) throw NativeControlError(79, "Unable to open the screenshot destination.");
    if (!destination->finalize(image)) {
        note(platform, "failed stage=write_png");
        throw NativeControlError(80, "Unable to write the screenshot PNG.");
    }
    note(platform, sized("wrote_png", image.width(), image.height()));
}

std::string fileURLPath(FileManager& files, const std::string& path) { return absolutePath(files, path); }

} // namespace

Task<CapabilityScreenshotResponse> captureScreenshot(Platform& platform, std::string outputPath, std::string brokerPath,
                                                     std::optional<std::string> bundlePath) {
    note(platform, "start");
    assertScreenCaptureGranted(platform);
    note(platform, "permission=granted");
    const std::string path = fileURLPath(platform.fileManager(), outputPath);
    platform.fileManager().createDirectory(parentFolder(path));

    Desktop& desktop = platform.desktop();
    const auto image = captureDesktopImageFallback(platform, desktop);
    note(platform, sized("captured method=coregraphics-displays", image->width(), image->height()));
    writePng(platform, desktop.screenImages(), path, *image);

    CapabilityScreenshotResponse response;
    response.brokerPath = std::move(brokerPath);
    response.bundlePath = std::move(bundlePath);
    response.imagePath = path;
    response.mimeType = "image/png";
    response.width = static_cast<std::int64_t>(image->width());
    response.height = static_cast<std::int64_t>(image->height());
    co_return response;
}

} // namespace vesk::CapabilityScreenCaptureSupport
