#pragma once

#include "VeskPlatform/Platform.hpp"

#include <optional>
#include <string>

// How a response names the program that answered. Records differ in the rule on purpose; each operation knows its own.

namespace vesk {

/// The main bundle's executable; without one argument zero, without that "VeskCapabilityBroker". For the status
/// report, screenshots, control records and media.
std::string executableBrokerPath(Platform& platform);

/// The last component of the bundle's path; if empty the path of its executable, without one "Vesk.app". For the
/// records of the operations that take a bundle.
std::string bundleNameBrokerPath(const Bundle& bundle);

/// The last component of the bundle's path, or "Vesk.app" if that is empty. For file access.
std::string shortBundleNameBrokerPath(const Bundle& bundle);

/// The bundle's path where its extension is exactly "app".
std::optional<std::string> bundlePath(const Bundle& bundle);

} // namespace vesk
