#include "VeskShellCore/BrokerPaths.hpp"

#include "VeskPlatform/Environment.hpp"
#include "VeskSupport/FilePath.hpp"

#include <string_view>

namespace vesk {

std::string executableBrokerPath(Platform& platform) {
    if (const auto& executable = platform.mainBundle().executablePath) return *executable;
    return platform.environment().argumentZero().value_or("VeskCapabilityBroker");
}

std::string bundleNameBrokerPath(const Bundle& bundle) {
    const std::string name = lastPathComponent(bundle.path);
    return name.empty() ? bundle.executablePath.value_or("Vesk.app") : name;
}

std::string shortBundleNameBrokerPath(const Bundle& bundle) {
    const std::string name = lastPathComponent(bundle.path);
    return name.empty() ? "Vesk.app" : name;
}

std::optional<std::string> bundlePath(const Bundle& bundle) {
    static constexpr std::string_view extension = ".app";
    const std::string name = lastPathComponent(bundle.path);
    // A name that is nothing but ".app" is a hidden file, not an extension.
    if (name.size() <= extension.size() || !name.ends_with(extension)) return std::nullopt;
    return bundle.path;
}

} // namespace vesk
