#pragma once

#include "VeskPlatform/Environment.hpp"

namespace vesk {

/// NSProcessInfo and the home directory that NSFileManager tells.
class ProcessInfoEnvironment : public Environment {
public:
    std::optional<std::string> value(const std::string& name) override;
    std::string homeDirectory() override;
    std::optional<std::string> argumentZero() override;
};

} // namespace vesk
