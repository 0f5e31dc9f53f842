#include "vesk/Linux/DoctorDesktop.hpp"

#include "VeskPlatform/Displays.hpp"
#include "VeskPlatform/InputEvents.hpp"
#include "VeskPlatform/Linux/AdapterModule.hpp"
#include "VeskPlatform/Linux/ChildProcess.hpp"
#include "VeskPlatform/Linux/Desktop/LinuxDesktop.hpp"
#include "VeskPlatform/Linux/DesktopReach.hpp"
#include "VeskPlatform/Linux/MainBundle.hpp"
#include "VeskPlatform/Linux/UserFolders.hpp"

#include <functional>
#include <utility>

namespace vesk {

namespace {

/// Looks at one part of the desktop after the other and notes what stands in the way.
class DesktopExamination {
public:
    DesktopExamination(Environment& environment, std::string service)
        : environment_(environment), modules_(moduleFolderOf(runningExecutable())),
          desktop_(modules_, {environment, stateFolder(environment), [](const std::string&) {}}),
          result_{std::move(service), {}} {}

    /// Whether there is a desktop to look at further.
    bool findsDisplay() {
        if (!desktopCanBeReached(environment_)) {
            result_.findings.push_back({"No display can be reached.", "Run within a desktop session (DISPLAY)."});
            return false;
        }
        bool hasMonitor = false;
        const bool isLookedAt = look("Log in to a desktop session anew.", [&] {
            const auto count = desktop_.displays().count();
            hasMonitor = count && *count > 0;
        });
        if (isLookedAt && !hasMonitor)
            result_.findings.push_back({"No monitor is switched on.", "Switch one on in the desktop's settings."});
        return isLookedAt;
    }

    void needsTestInput() {
        look("Run an X server with the extension XTEST.", [&] {
            if (!desktop_.inputEvents().create(MouseEvent{}))
                result_.findings.push_back(
                    {"The display takes no input from programs.", "Run an X server with the extension XTEST."});
        });
    }

    void needsPortal(const std::string& portal) {
        look("apt install xdg-desktop-portal and your desktop's own, such as xdg-desktop-portal-gnome", [&] {
            const AdapterModule module(modules_, "wayland", waylandPackages);
            module.function<PortalCheck>("veskRequirePortal")(portal);
        });
    }

    void needsAccessibilityBus() {
        if (!installedProgram("at-spi-bus-launcher", {"/usr/libexec", "/usr/lib/at-spi2-core"})) {
            result_.findings.push_back({"The accessibility bus is not installed.", "apt install at-spi2-core"});
            return;
        }
        look("Run within a desktop session with a session bus (dbus-run-session).",
             [&] { desktop_.accessibilityTree(); });
    }

    void needsImages() {
        look("Install this program anew.", [&] { desktop_.screenImages(); });
    }

    DoctorService result() { return std::move(result_); }

private:
    /// A module that is missing names its package by itself.
    bool look(const std::string& remedy, const std::function<void()>& part) {
        try {
            part();
            return true;
        } catch (const AdapterModuleMissing& error) {
            result_.findings.push_back({error.description(), std::nullopt});
        } catch (const ErrorRecord& error) {
            result_.findings.push_back({error.description(), remedy});
        }
        return false;
    }

    Environment& environment_;
    std::string modules_;
    LinuxDesktop desktop_;
    DoctorService result_;
};

bool isWayland(Environment& environment) { return !environment.value("WAYLAND_DISPLAY").value_or("").empty(); }

} // namespace

DoctorService examineAccessibility(Environment& environment) {
    const bool usesPortals = isWayland(environment);
    DesktopExamination examination(environment,
                                   usesPortals ? "AT-SPI and the portal RemoteDesktop" : "AT-SPI and XTest");
    if (!examination.findsDisplay()) return examination.result();
    if (usesPortals) {
        examination.needsPortal("RemoteDesktop");
        examination.needsPortal("ScreenCast"); // clicks are placed on its streams
    } else {
        examination.needsTestInput();
    }
    examination.needsAccessibilityBus();
    return examination.result();
}

DoctorService examineScreenRecording(Environment& environment) {
    const bool usesPortals = isWayland(environment);
    const bool usesX11 = !environment.value("DISPLAY").value_or("").empty();
    DesktopExamination examination(environment, usesPortals ? "The portal Screenshot"
                                                : usesX11   ? "X11"
                                                            : "X11, or the desktop portals");
    if (!examination.findsDisplay()) return examination.result();
    if (usesPortals) examination.needsPortal("Screenshot");
    examination.needsImages();
    return examination.result();
}

} // namespace vesk
