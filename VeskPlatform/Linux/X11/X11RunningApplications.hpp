#pragma once

#include "VeskPlatform/Linux/Desktop/ApplicationOpener.hpp"
#include "VeskPlatform/Linux/Desktop/DesktopFiles.hpp"
#include "VeskPlatform/Linux/X11/X11Windows.hpp"
#include "VeskPlatform/RunningApplications.hpp"

#include <string>
#include <vector>

namespace vesk {

/// The programs that have windows on an X server. A process is one application for each desktop file that its windows
/// belong to, and windows without one go with the first of their process. An application's name is that of its desktop
/// file, else its windows' class, else the process's.
class X11RunningApplications : public RunningApplications {
public:
    X11RunningApplications(X11Connection& connection, Environment& environment);

    /// In the order in which their first windows were shown.
    std::vector<RunningApplication> list() override;
    std::optional<RunningApplication> frontmost() override;
    /// Raises the application's windows, and gives the attention to the one that was used last.
    bool activate(const RunningApplication& application) override;
    Task<int> runOpener(std::vector<std::string> arguments) override;

private:
    struct Application {
        RunningApplication description;
        std::vector<X11Window> windows;
    };

    std::vector<Application> applicationsOf(const std::vector<xcb_window_t>& windows);
    std::optional<RunningApplication> ownerOf(xcb_window_t window);
    RunningApplication describe(const X11Window& window);

    X11Windows windows_;
    DesktopFiles files_;
    ApplicationOpener opener_;
};

} // namespace vesk
