#pragma once

#include "VeskPlatform/Linux/Wayland/DesktopPortal.hpp"
#include "VeskPlatform/Linux/Wayland/Picture.hpp"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace vesk {

/// What all monitors show now, as the Screenshot portal tells without a dialog of its own; null where the user refused
/// or the file that it names cannot be read. The file stays, since the portal does not say whose it is.
std::shared_ptr<const Picture> takeScreenshot(DesktopPortal& portal);

/// The path of a `file:` URI on this machine (RFC 8089); none for another URI.
std::optional<std::string> pathOfFileUri(std::string_view uri);

} // namespace vesk
