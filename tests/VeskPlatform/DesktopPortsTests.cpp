#include "VeskPlatform/Linux/Images/PixmanScreenImages.hpp"
#include "VeskPlatform/Linux/ProcessEnvironment.hpp"
#include "VeskPlatform/Linux/X11/X11Capture.hpp"
#include "VeskPlatform/Linux/X11/X11WindowSystem.hpp"
#include "tests/VeskPlatform/Linux/X11/TestWindow.hpp"
#include "tests/contracts/DisplaysContract.hpp"
#include "tests/contracts/InputEventsContract.hpp"
#include "tests/contracts/RunningApplicationsContract.hpp"
#include "tests/contracts/ScreenImagesContract.hpp"
#include "tests/fakes/FakeDisplays.hpp"
#include "tests/fakes/FakeInputEvents.hpp"
#include "tests/fakes/FakeRunningApplications.hpp"
#include "tests/support/TemporaryFolder.hpp"
#include "tests/support/VirtualDesktop.hpp"

namespace vesk::test {
namespace {

class FakeWorld {
public:
    FakeWorld() {
        fakeDisplays.all = {{1, {0, 0, 500, 400}}, {2, {500, 0, 400, 300}, 2}};
        fakeApplications.all = {{.processIdentifier = 7, .localizedName = "One"},
                                {.processIdentifier = 8, .localizedName = "Two"}};
        fakeApplications.front = fakeApplications.all.front();
        fakeApplications.whenActivated = [this](const RunningApplication& one) { fakeApplications.front = one; };
    }
    Displays& displays() { return fakeDisplays; }
    InputEvents& events() { return fakeEvents; }
    RunningApplications& applications() { return fakeApplications; }
    ScreenImages& images() { return fakeImages; }
    std::unique_ptr<ScreenImage> picture() { return std::make_unique<FakeImage>("picture", 40, 30); }
    void settle(const RunningApplication&) {}

    DisplayIdentifier unknown = 99;
    std::string startable = "starter", path = "/picture.png";

private:
    FakeDisplays fakeDisplays;
    FakeInputEvents fakeEvents;
    FakeRunningApplications fakeApplications;
    FakeScreenImages fakeImages;
};

class X11PortsWorld {
public:
    X11PortsWorld() {
        desktop.run("xrandr", {"--setmonitor", "left", "500/130x400/100+0+0", "screen"});
        desktop.run("xrandr", {"--setmonitor", "right", "300/80x300/80+500+0", "none"});
        desktop.setVariable("XDG_DATA_HOME", folder.path());
        folder.write("applications/starter.desktop", "[Desktop Entry]\nType=Application\nName=S\nExec=true\n");
        program.show({.className = "One", .process = 7});
        program.show({.className = "Two", .process = 8, .x = 300});
        eventually("a window in front", [this] { return applications().frontmost().has_value(); });
    }
    Displays& displays() { return session.displays(); }
    InputEvents& events() { return session.inputEvents(); }
    RunningApplications& applications() { return session.runningApplications(); }
    ScreenImages& images() { return screenImages; }
    std::unique_ptr<ScreenImage> picture() { return captureScreen(program.connection, {0, 0, 40, 30}); }
    void settle(const RunningApplication& wanted) {
        eventually("the application in front", [&] { return applications().frontmost() == wanted; });
    }

    TemporaryFolder folder;
    DisplayIdentifier unknown = 0xABCDEF;
    std::string startable = "starter", path = folder / "picture.png";

private:
    VirtualDesktop desktop;
    ProcessEnvironment environment;
    X11WindowSystem session{DesktopSurroundings{environment, folder.path(), [](const std::string&) {}}};
    TestProgram program{desktop.display()};
    PixmanScreenImages screenImages;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Fake, DisplaysContract, FakeWorld);
INSTANTIATE_TYPED_TEST_SUITE_P(X11, DisplaysContract, X11PortsWorld);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, InputEventsContract, FakeWorld);
INSTANTIATE_TYPED_TEST_SUITE_P(X11, InputEventsContract, X11PortsWorld);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, RunningApplicationsContract, FakeWorld);
INSTANTIATE_TYPED_TEST_SUITE_P(X11, RunningApplicationsContract, X11PortsWorld);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, ScreenImagesContract, FakeWorld);
INSTANTIATE_TYPED_TEST_SUITE_P(X11, ScreenImagesContract, X11PortsWorld);

} // namespace
} // namespace vesk::test
