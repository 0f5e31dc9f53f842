#pragma once

#include "VeskPlatform/Platform.hpp"
#include "VeskShellCore/ScreenCaptureModels.hpp"
#include "VeskSupport/Task.hpp"

#include <optional>
#include <string>

/// Pictures of what the user sees. Each step leaves one "screen-capture" line in the diagnostic log.
namespace vesk::CapabilityScreenCaptureSupport {

/// Writes the whole desktop, one pixel for each point and transparent where no display is, as a PNG file, and makes the
/// folders above it. Throws NativeControlError 77 without consent, 78 where the desktop cannot be captured as a whole,
/// 79 and 80 where the file cannot be written, and the failure to make a folder. An existing file is replaced.
Task<CapabilityScreenshotResponse> captureScreenshot(Platform& platform, std::string outputPath, std::string brokerPath,
                                                     std::optional<std::string> bundlePath);

} // namespace vesk::CapabilityScreenCaptureSupport
