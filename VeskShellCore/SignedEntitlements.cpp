#include "VeskShellCore/SignedEntitlements.hpp"

#include "VeskPlatform/BundleInformation.hpp"

namespace vesk::VeskSignedEntitlements {

JsonValue::Object read(Platform& platform, const std::string& path) {
    return platform.bundleInformation().entitlements(path);
}

JsonValue::Object read(Platform& platform, const Bundle& bundle) {
    if (bundle.executablePath)
        if (auto granted = read(platform, *bundle.executablePath); !granted.empty()) return granted;
    return read(platform, bundle.path);
}

bool hasBoolean(Platform& platform, std::string_view key, const Bundle& bundle) {
    const JsonValue::Object granted = read(platform, bundle);
    const auto found = granted.find(key);
    return found != granted.end() && found->second == JsonValue{true};
}

} // namespace vesk::VeskSignedEntitlements
