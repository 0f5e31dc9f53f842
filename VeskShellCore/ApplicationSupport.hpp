#pragma once

#include "VeskPlatform/Environment.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace vesk {

/// The folder of what the application keeps: the one that `VESK_APP_SUPPORT_DIR` names (without blanks at its ends),
/// else "Library/Application Support/Vesk" in the home folder. Computed afresh; none where there is neither.
std::optional<std::string> applicationSupportDirectory(Environment& environment);

/// The path of `name` in that folder, such as "logs".
std::optional<std::string> applicationSupportItem(Environment& environment, std::string_view name);

/// The path of `name` among what the assistant's daemon leaves for others, "Library/Application Support/Vesk/data" in
/// the home folder. That is where the daemon writes, whatever `VESK_APP_SUPPORT_DIR` says.
std::string assistantDataItem(Environment& environment, std::string_view name);

} // namespace vesk
