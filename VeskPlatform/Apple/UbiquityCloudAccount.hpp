#pragma once

#include "VeskPlatform/CloudAccount.hpp"

namespace vesk {

/// The user's iCloud account, as NSFileManager knows it.
class UbiquityCloudAccount : public CloudAccount {
public:
    bool hasIdentityToken() override;
    std::optional<std::string> drivePath() override;
    std::optional<std::string> containerPath(const std::optional<std::string>& identifier) override;
};

} // namespace vesk
