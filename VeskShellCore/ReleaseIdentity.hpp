#pragma once

#include "VeskPlatform/Platform.hpp"
#include "VeskShellCore/AppUpdateActivationRecord.hpp"
#include "VeskSupport/Json.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace vesk {

/// A text of a bundle's information dictionary, trimmed; none where it is blank, or no text.
std::optional<std::string> trimmedBundleString(const JsonValue::Object& information, std::string_view key);

/// The release that is running, as its bundle says (`CFBundleShortVersionString`, `CFBundleVersion`,
/// `VeskReleaseChannel`). What the bundle does not say, or a bare executable has no bundle to say, is `builtVersion`,
/// "0" and "stable".
AppUpdateReleaseIdentity currentRelease(Platform& platform, const std::string& builtVersion);

} // namespace vesk
