#pragma once

#include "VeskPlatform/MediaFramework.hpp"

#include <functional>
#include <memory>
#include <string>

namespace vesk {

struct MediaOptions {
    /// One line for the diagnostic log.
    std::function<void(const std::string& message)> log;
};

/// `veskMediaFramework` in the module `media`, which makes an object that the caller owns.
using MediaFrameworkFactory = MediaFramework*(const MediaOptions& options);

/// Opens the module, which stands on FFmpeg's libraries. `moduleFolder` is as in AdapterModule. Throws
/// AdapterModuleMissing.
std::unique_ptr<MediaFramework> loadMediaFramework(const std::string& moduleFolder, const MediaOptions& options);

} // namespace vesk
