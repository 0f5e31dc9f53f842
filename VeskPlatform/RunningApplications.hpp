#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace vesk {

struct RunningApplication {
    std::int32_t processIdentifier = 0;
    std::optional<std::string> bundleIdentifier;
    /// The name that the user knows it by.
    std::optional<std::string> localizedName;

    bool operator==(const RunningApplication&) const = default;
};

/// The applications of the user's session. Called on the main executor; each call reads live state. Throws ErrorRecord
/// where there is no session to look at.
class RunningApplications {
public:
    virtual ~RunningApplications() = default;

    virtual std::optional<RunningApplication> frontmost() = 0;
};

} // namespace vesk
