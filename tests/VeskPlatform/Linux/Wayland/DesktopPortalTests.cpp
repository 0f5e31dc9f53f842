#include "VeskPlatform/Linux/Wayland/DesktopPortal.hpp"

#include "tests/VeskPlatform/Linux/Wayland/PortalWorld.hpp"

namespace vesk::test {
namespace {

class DesktopPortalTests : public PortalWorld {
protected:
    /// The URI in the results, or that there are none.
    std::string screenshot(DesktopPortal& asked) {
        const BusMessage results = asked.request("Screenshot", "Screenshot", {{'s', ""}}, {{"interactive", false}});
        return results ? textOf(readProperties(*results), "uri") : "refused";
    }
};

TEST_F(DesktopPortalTests, AnOutcomeIsHeardWheneverItComes) {
    struct Case {
        bool early, ownHandle;
    };
    desktop.screenshotUri = "file:///a";
    serve();
    for (const Case& given : {Case{false, false}, Case{true, false}, Case{false, true}, Case{true, true}}) {
        desktop.change([&] {
            desktop.respondsBeforeItAnswers = given.early;
            desktop.namesRequestsItself = given.ownHandle;
        });
        EXPECT_EQ(screenshot(portal), "file:///a") << given.early << given.ownHandle;
    }
    EXPECT_EQ(desktop.calls(), Lines(4, "Screenshot interactive=false"));
}

TEST_F(DesktopPortalTests, ARefusalHasNoResults) {
    serve();
    for (const std::uint32_t outcome : {1U, 2U}) {
        desktop.change([&] { desktop.outcomes["Screenshot"] = outcome; });
        EXPECT_EQ(screenshot(portal), "refused") << outcome;
    }
}

TEST_F(DesktopPortalTests, ARequestThatNobodyDecidesIsTakenBack) {
    desktop.outcomes["Screenshot"] = std::nullopt;
    serve();
    DesktopPortal hasty({.answer = std::chrono::seconds(10), .user = std::chrono::milliseconds(20)});
    EXPECT_THROW(screenshot(hasty), PortalSilent);
    EXPECT_EQ(desktop.calls(), (Lines{"Screenshot interactive=false", "Close request"}));
}

TEST_F(DesktopPortalTests, APortalThatIsNotThereIsNamedWithWhatToInstall) {
    const std::string missing =
        "The desktop offers no portal \"Screenshot\": install xdg-desktop-portal and the portal of your desktop "
        "(xdg-desktop-portal-gnome, xdg-desktop-portal-kde, xdg-desktop-portal-wlr …).";
    const auto failure = [&] {
        try {
            return screenshot(portal);
        } catch (const PortalMissing& error) {
            return error.description();
        }
    };
    EXPECT_EQ(failure(), missing) << "no service";
    desktop.portals = {"RemoteDesktop"};
    serve();
    EXPECT_EQ(failure(), missing) << "a service without the portal";
}

TEST_F(DesktopPortalTests, WhichPortalsAreThereIsKnownWithoutAskingTheUser) {
    EXPECT_THROW(portal.require("Screenshot"), PortalMissing) << "no service";
    desktop.portals = {"RemoteDesktop"};
    serve();
    EXPECT_THROW(portal.require("Screenshot"), PortalMissing) << "a service without the portal";
    EXPECT_NO_THROW(portal.require("RemoteDesktop"));
    EXPECT_EQ(desktop.calls(), Lines{});
}

TEST_F(DesktopPortalTests, WithoutASessionBusTheErrorSaysSo) {
    const ScopedVariables none(noBuses());
    try {
        screenshot(portal);
        ADD_FAILURE() << "no failure";
    } catch (const BusError& error) {
        EXPECT_TRUE(error.description().starts_with(
            "The session bus cannot be reached. Run within a desktop session (DBUS_SESSION_BUS_ADDRESS). "))
            << error.description();
    }
}

TEST_F(DesktopPortalTests, OtherFailuresOfTheBusPassThrough) {
    desktop.outcomes["SelectDevices"] = 0;
    serve();
    EXPECT_THROW(portal.request("RemoteDesktop", "SelectDevices", {{'o', "/none"}}, {}), BusError);
}

TEST_F(DesktopPortalTests, TokensAreNewEachTimeAndPartsOfPaths) {
    const std::string token = DesktopPortal::newToken();
    EXPECT_NE(token, DesktopPortal::newToken());
    EXPECT_EQ(token.find_first_not_of("abcdefghijklmnopqrstuvwxyz_0123456789"), std::string::npos) << token;
}

} // namespace
} // namespace vesk::test
