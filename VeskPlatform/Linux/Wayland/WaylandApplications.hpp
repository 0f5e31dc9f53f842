#pragma once

#include "VeskPlatform/Linux/Desktop/ApplicationOpener.hpp"
#include "VeskPlatform/Linux/Desktop/DesktopFiles.hpp"
#include "VeskPlatform/Linux/Wayland/AccessibleApplications.hpp"
#include "VeskPlatform/RunningApplications.hpp"

#include <string>
#include <vector>

namespace vesk {

/// The programs of a Wayland session: those on the accessibility bus, since a compositor tells of no windows but one's
/// own. A program is brought to the front by asking itself (freedesktop.org desktop entries, "D-Bus Activation"), which
/// only some understand.
class WaylandApplications : public RunningApplications {
public:
    explicit WaylandApplications(Environment& environment);

    std::vector<RunningApplication> list() override;
    std::optional<RunningApplication> frontmost() override;
    bool activate(const RunningApplication& application) override;
    Task<int> runOpener(std::vector<std::string> arguments) override;

private:
    RunningApplication describe(const AccessibleApplication& accessible);

    AccessibleApplications applications_;
    DesktopFiles files_;
    ApplicationOpener opener_;
};

} // namespace vesk
