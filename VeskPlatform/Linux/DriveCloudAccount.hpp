#pragma once

#include "VeskPlatform/CloudAccount.hpp"

namespace vesk {

class Environment;

/// The drive that VESK_CLOUD_DRIVE names, mounted or synchronised by another program: the user is signed in where it is
/// a folder. Containers lie beside the user's other data and are made, for the user alone, on demand.
class DriveCloudAccount : public CloudAccount {
public:
    explicit DriveCloudAccount(Environment& environment) : environment_(environment) {}

    bool hasIdentityToken() override;
    std::optional<std::string> drivePath() override;
    std::optional<std::string> containerPath(const std::optional<std::string>& identifier) override;

private:
    Environment& environment_;
};

} // namespace vesk
