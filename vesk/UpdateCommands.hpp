#pragma once

#include "VeskPlatform/Platform.hpp"
#include "vesk/CommandLine.hpp"

#include <string>

namespace vesk {

struct UpdateAnswer {
    /// A record, as JSON.
    std::string text;
    /// False for a recovery that failed, or that waits for another release to be launched.
    bool isSettled = true;
};

/// Runs a verb of `vesk update` over the runtime that is located.
UpdateAnswer runUpdate(const UpdateCommand& command, Platform& platform);

} // namespace vesk
