#include "VeskPlatform/Linux/Desktop/PixelImage.hpp"
#include "VeskPlatform/Linux/X11/X11Capture.hpp"
#include "tests/VeskPlatform/Linux/X11/RootPicture.hpp"
#include "tests/VeskPlatform/Linux/X11/X11World.hpp"

#include <algorithm>

namespace vesk::test {
namespace {

using ::testing::ElementsAre;

/// A screen of its own for each test, in a format that it chooses.
class X11DisplaysTests : public ::testing::Test {
protected:
    Displays& start(const std::string& format = "900x400x24") {
        desktop.emplace(VirtualScreen{.format = format, .hasWindowManager = false});
        session.emplace(DesktopSurroundings{environment, desktop->home(), [](const std::string&) {}});
        return session->displays();
    }
    void setMonitor(const std::string& name, const std::string& geometry, const std::string& output) {
        desktop->run("xrandr", {"--setmonitor", name, geometry, output});
    }
    std::vector<ScreenRectangle> allBounds() {
        std::vector<ScreenRectangle> all;
        const auto displays = session->displays().list(100).value();
        for (const DisplayIdentifier each : displays) all.push_back(session->displays().bounds(each));
        return all;
    }
    /// The first place where a picture of `bounds` is not the painting, seen through `mask`; none where it is.
    static std::string firstDifference(const PixelImage& image, const ScreenRectangle& bounds, const Painting& painting,
                                       std::uint32_t mask = 0xFFFFFF) {
        for (std::size_t y = 0; y < image.height(); ++y) {
            for (std::size_t x = 0; x < image.width(); ++x) {
                const std::uint32_t found = image.pixels()[y * image.stride() + x],
                                    wanted = painting(int(x) + int(bounds.x), int(y) + int(bounds.y));
                if ((found & mask) != (wanted & mask))
                    return "at " + std::to_string(x) + "," + std::to_string(y) + " " + std::to_string(found)
                           + " instead of " + std::to_string(wanted);
            }
        }
        return "";
    }
    std::unique_ptr<ScreenImage> capture(std::size_t index) {
        return session->displays().capture(session->displays().list(100).value().at(index));
    }

    ProcessEnvironment environment;
    std::optional<VirtualDesktop> desktop;
    std::optional<X11WindowSystem> session;
};

TEST_F(X11DisplaysTests, OneScreenIsOneDisplay) {
    Displays& displays = start();
    EXPECT_EQ(displays.count(), 1U);
    EXPECT_THAT(allBounds(), ElementsAre(ScreenRectangle{0, 0, 900, 400}));
}

TEST_F(X11DisplaysTests, TwoMonitorsArePartsOfOneSpaceAndShowTheirPartOfIt) {
    Displays& displays = start();
    setMonitor("left", "500/130x400/100+0+0", "screen");
    setMonitor("right", "400/100x300/80+500+100", "none");
    EXPECT_EQ(displays.count(), 2U);
    EXPECT_THAT(allBounds(), ElementsAre(ScreenRectangle{0, 0, 500, 400}, ScreenRectangle{500, 100, 400, 300}));
    EXPECT_EQ(displays.list(1).value().size(), 1U);
    paintRoot(desktop->display(), testPattern);
    for (const std::size_t index : {0U, 1U}) {
        const auto image = capture(index);
        ASSERT_NE(image, nullptr);
        const ScreenRectangle bounds = allBounds()[index];
        EXPECT_EQ(double(image->width()), bounds.width);
        EXPECT_EQ(double(image->height()), bounds.height);
        const auto& pixels = dynamic_cast<const PixelImage&>(*image);
        EXPECT_TRUE(pixels.isOpaque());
        EXPECT_EQ(firstDifference(pixels, bounds, testPattern), "");
    }
}

TEST_F(X11DisplaysTests, WhatAMonitorShowsOutsideTheScreenIsTransparent) {
    start();
    setMonitor("over", "300/80x200/50+800+350", "screen");
    paintRoot(desktop->display(), testPattern);
    const auto image = capture(0);
    ASSERT_NE(image, nullptr);
    const auto& pixels = dynamic_cast<const PixelImage&>(*image);
    EXPECT_FALSE(pixels.isOpaque());
    const Painting expected = [](int x, int y) { return x < 900 && y < 400 ? 0xFF000000 | testPattern(x, y) : 0U; };
    EXPECT_EQ(firstDifference(pixels, {800, 350, 300, 200}, expected, 0xFFFFFFFF), "");
}

TEST_F(X11DisplaysTests, AnAreaLeftOfTheScreenIsTransparent) {
    start();
    paintRoot(desktop->display(), testPattern);
    X11Connection connection(desktop->display());
    const auto partly = captureScreen(connection, {-20, -10, 50, 40}),
               wholly = captureScreen(connection, {-90, 0, 50, 40});
    const Painting expected = [](int x, int y) { return x >= 0 && y >= 0 ? 0xFF000000 | testPattern(x, y) : 0U; };
    ASSERT_TRUE(partly && wholly);
    EXPECT_EQ(firstDifference(*partly, {-20, -10, 50, 40}, expected, 0xFFFFFFFF), "");
    EXPECT_EQ(firstDifference(*wholly, {-90, 0, 50, 40}, expected, 0xFFFFFFFF), "");
    EXPECT_EQ(captureScreen(connection, {0, 0, 0, 40}), nullptr);
}

TEST_F(X11DisplaysTests, ADisplayThatIsGoneHasNoPlaceAndNoPicture) {
    Displays& displays = start();
    EXPECT_EQ(displays.bounds(0xABCDEF), ScreenRectangle{});
    EXPECT_EQ(displays.capture(0xABCDEF), nullptr);
}

TEST_F(X11DisplaysTests, NoMonitorIsNoDisplay) {
    Displays& displays = start();
    desktop->run("xrandr", {"--fb", "900x400", "--output", "screen", "--off"});
    EXPECT_EQ(displays.count(), 0U);
    EXPECT_THAT(displays.list(10).value(), ElementsAre());
}

/// Each colour has ten bits: the upper eight are those of the picture.
TEST_F(X11DisplaysTests, AScreenOfDeepColours) {
    start("300x200x30");
    const auto deep = [](int x, int y) {
        const std::uint32_t colour = testPattern(x, y);
        const auto widened = [&](unsigned int shift) {
            const std::uint32_t value = colour >> shift & 0xFF;
            return value << 2U | value >> 6U;
        };
        return widened(16) << 20U | widened(8) << 10U | widened(0);
    };
    paintRoot(desktop->display(), deep);
    const auto image = capture(0);
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(firstDifference(dynamic_cast<const PixelImage&>(*image), {0, 0, 300, 200}, testPattern), "");
}

TEST_F(X11DisplaysTests, AScreenOfAPaletteHasNoPicture) {
    Displays& displays = start("300x200x8");
    EXPECT_EQ(displays.count(), 1U);
    EXPECT_EQ(capture(0), nullptr);
}

} // namespace
} // namespace vesk::test
