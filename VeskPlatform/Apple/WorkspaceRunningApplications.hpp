#pragma once

#include "VeskPlatform/RunningApplications.hpp"

namespace vesk {

/// The applications that the workspace knows. What it tells of them changes only while the main run loop turns.
class WorkspaceRunningApplications : public RunningApplications {
public:
    std::vector<RunningApplication> list() override;
    std::optional<RunningApplication> frontmost() override;
    bool activate(const RunningApplication& application) override;
    /// What the opener writes about a failure is left out; its status tells.
    Task<int> runOpener(std::vector<std::string> arguments) override;
};

} // namespace vesk
