#pragma once

#include "VeskSupport/Task.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vesk {

struct RunningApplication {
    std::int32_t processIdentifier = 0;
    std::optional<std::string> bundleIdentifier{};
    /// The name that the user knows it by.
    std::optional<std::string> localizedName{};
    /// Where its bundle, or the file that starts it, lies.
    std::optional<std::string> bundlePath{};
    bool isTerminated = false;
    /// False for a process that can never have a window.
    bool hasUserInterface = true;

    bool operator==(const RunningApplication&) const = default;
};

/// The applications of the user's session. Called on the main executor; each call reads live state. Throws ErrorRecord
/// where there is no session to look at.
class RunningApplications {
public:
    virtual ~RunningApplications() = default;

    /// In the system's own order.
    virtual std::vector<RunningApplication> list() = 0;
    virtual std::optional<RunningApplication> frontmost() = 0;
    /// Asks for all windows of the application to come to the front; whether the system accepted. Waits for no window.
    virtual bool activate(const RunningApplication& application) = 0;
    /// Runs the system's opener with `-b IDENTIFIER`, or `-a` and a path or a name; its exit status, once it has ended.
    /// Throws ErrorRecord where it cannot be started.
    virtual Task<int> runOpener(std::vector<std::string> arguments) = 0;
};

} // namespace vesk
