#pragma once

#include "VeskPlatform/Platform.hpp"
#include "VeskSupport/Task.hpp"

#include <string>
#include <utility>

namespace vesk {

/// Whether a marker file declares the sign-in invalid. The packaged runtime writes it; here it is only looked for.
class VeskAuthInvalidationProbe {
public:
    /// The platform outlives the probe.
    VeskAuthInvalidationProbe(Platform& platform, std::string markerFilePath)
        : platform_(platform), markerFilePath_(std::move(markerFilePath)) {}

    /// "Library/Application Support/Vesk/data/vesk-auth-invalidated.json" in the user's home.
    static std::string defaultMarkerFilePath(Platform& platform);

    /// Never fails: a path that cannot be reached is not invalidated.
    Task<bool> isInvalidated() const;

private:
    Platform& platform_;
    std::string markerFilePath_;
};

} // namespace vesk
