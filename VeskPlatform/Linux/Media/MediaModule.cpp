#include "VeskPlatform/Linux/Media/FfmpegFramework.hpp"

/// A MediaFrameworkFactory.
extern "C" __attribute__((visibility("default"))) vesk::MediaFramework*
veskMediaFramework(const vesk::MediaOptions& options) {
    return new vesk::FfmpegFramework(options);
}
