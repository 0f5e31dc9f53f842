#pragma once

#include <optional>
#include <string>

namespace vesk {

/// The user's account for cloud files. Called on the main executor; no call fails.
class CloudAccount {
public:
    virtual ~CloudAccount() = default;

    /// Whether the user is signed in and the drive is turned on.
    virtual bool hasIdentityToken() = 0;
    /// The folder of the user's drive, absolute; none where the user has none. It need not be there.
    virtual std::optional<std::string> drivePath() = 0;
    /// The folder of an application's container, the default one without an identifier; none where it cannot be
    /// reached now. It is made on demand.
    virtual std::optional<std::string> containerPath(const std::optional<std::string>& identifier) = 0;
};

} // namespace vesk
