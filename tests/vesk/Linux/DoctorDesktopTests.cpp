#include "tests/fakes/FakeDesktopPortal.hpp"
#include "tests/support/NestedCompositor.hpp"
#include "tests/support/PrivateBus.hpp"
#include "tests/support/VirtualDesktop.hpp"
#include "tests/vesk/CompanionTest.hpp"

namespace vesk::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

struct DoctorDesktopTests : CompanionTest {
    struct Examined {
        std::string service;
        std::vector<std::string> problems;
    };
    Examined examined(const std::string& id) const {
        const JsonValue report = json({"doctor", "--json"});
        for (const JsonValue& each : listAt(report, "capabilities")) {
            if (textAt(each, "id") != id) continue;
            Examined result{textAt(each, "service"), {}};
            for (const JsonValue& finding : listAt(each, "findings"))
                result.problems.push_back(textAt(finding, "problem"));
            return result;
        }
        ADD_FAILURE() << "no capability " << id;
        return {};
    }

    void SetUp() override { json({"consent", "grant", "accessibility", "screen_recording", "--yes", "--json"}); }

    PrivateBus bus;
};

TEST_F(DoctorDesktopTests, AnX11DesktopNeedsTheAccessibilityBus) {
    const VirtualDesktop desktop;
    program.environment["DISPLAY"] = desktop.display();
    EXPECT_EQ(examined("accessibility").service, "AT-SPI and XTest");
    EXPECT_THAT(examined("accessibility").problems,
                ElementsAre(StartsWith("The accessibility bus of this session cannot be reached (")));
    EXPECT_EQ(examined("screen_recording").service, "X11");
    EXPECT_THAT(examined("screen_recording").problems, IsEmpty());
    program.environment["AT_SPI_BUS_ADDRESS"] = bus.address();
    EXPECT_THAT(examined("accessibility").problems, IsEmpty());
}

TEST_F(DoctorDesktopTests, ADesktopWithoutAMonitorShowsNothing) {
    const VirtualDesktop desktop;
    program.environment["DISPLAY"] = desktop.display();
    program.environment["AT_SPI_BUS_ADDRESS"] = bus.address();
    desktop.run("xrandr", {"--fb", "800x600", "--output", "screen", "--off"});
    for (const char* id : {"accessibility", "screen_recording"})
        EXPECT_THAT(examined(id).problems, ElementsAre("No monitor is switched on.")) << id;
}

TEST_F(DoctorDesktopTests, AWaylandDesktopNeedsItsPortals) {
    const NestedCompositor compositor;
    program.environment["WAYLAND_DISPLAY"] = NestedCompositor::display;
    program.environment["XDG_RUNTIME_DIR"] = compositor.runtimeFolder();
    program.environment["AT_SPI_BUS_ADDRESS"] = program.environment["DBUS_SESSION_BUS_ADDRESS"] = bus.address();
    EXPECT_EQ(examined("accessibility").service, "AT-SPI and the portal RemoteDesktop");
    EXPECT_THAT(examined("accessibility").problems,
                ElementsAre(StartsWith("The desktop offers no portal \"RemoteDesktop\": install "),
                            StartsWith("The desktop offers no portal \"ScreenCast\": install ")));
    EXPECT_EQ(examined("screen_recording").service, "The portal Screenshot");
    EXPECT_THAT(examined("screen_recording").problems,
                ElementsAre(StartsWith("The desktop offers no portal \"Screenshot\": install ")));
    FakeDesktopPortal portals;
    portals.serveAt(bus.address());
    for (const char* id : {"accessibility", "screen_recording"}) EXPECT_THAT(examined(id).problems, IsEmpty()) << id;
    EXPECT_THAT(portals.calls(), IsEmpty());
}

} // namespace
} // namespace vesk::test
