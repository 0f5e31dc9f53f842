#include "VeskShellCore/ReleaseIdentity.hpp"

#include "VeskPlatform/BundleInformation.hpp"
#include "VeskSupport/Text.hpp"

namespace vesk {

std::optional<std::string> trimmedBundleString(const JsonValue::Object& information, std::string_view key) {
    const auto found = information.find(key);
    const auto* text = found == information.end() ? nullptr : std::get_if<std::string>(&found->second.value);
    return text == nullptr ? std::nullopt : trimmedOrAbsent(*text);
}

AppUpdateReleaseIdentity currentRelease(Platform& platform, const std::string& builtVersion) {
    const auto information = platform.bundleInformation().informationDictionary(platform.mainBundle());
    return {trimmedBundleString(information, "CFBundleShortVersionString").value_or(builtVersion),
            trimmedBundleString(information, "CFBundleVersion").value_or("0"),
            trimmedBundleString(information, "VeskReleaseChannel").value_or("stable")};
}

} // namespace vesk
