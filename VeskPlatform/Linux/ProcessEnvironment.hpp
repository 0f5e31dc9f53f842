#pragma once

#include "VeskPlatform/Environment.hpp"

namespace vesk {

/// The variables of this process. The home directory is HOME where that is an absolute path, else the one of the
/// user database, without slashes at its end.
class ProcessEnvironment : public Environment {
public:
    std::optional<std::string> value(const std::string& name) override;
    std::string homeDirectory() override;
    std::optional<std::string> argumentZero() override;
};

} // namespace vesk
