#include "VeskPlatform/Linux/Media/LoadedMedia.hpp"

#include "VeskPlatform/Linux/AdapterModule.hpp"

namespace vesk {

std::unique_ptr<MediaFramework> loadMediaFramework(const std::string& moduleFolder, const MediaOptions& options) {
    const AdapterModule module(moduleFolder, "media", "libavformat59");
    return std::unique_ptr<MediaFramework>(module.function<MediaFrameworkFactory>("veskMediaFramework")(options));
}

} // namespace vesk
