#include "VeskPlatform/Linux/Wayland/OutputLayout.hpp"

#include "tests/fakes/FakeCompositor.hpp"
#include "tests/support/NestedCompositor.hpp"

#include <algorithm>
#include <gtest/gtest.h>

namespace vesk::test {
namespace {

constexpr std::chrono::seconds patience{10};

/// One monitor of 800 by 600 pixels, and beside it one of 1200 by 800 points, with two pixels to each, that stands on
/// its side.
constexpr const char* monitors = R"([output]
name=WL1
mode=800x600
[output]
name=WL2
mode=1200x800
scale=2
transform=rotate-90
)";

std::string failureOf(const std::function<void()>& work) {
    try {
        work();
    } catch (const WaylandError& error) {
        return error.description();
    }
    return "no failure";
}

TEST(OutputLayout, APlaceIsTheLogicalOneOrElseWhatTheMonitorTells) {
    struct Case {
        const char* name;
        OutputFacts facts;
        ScreenRectangle place;
    };
    const Case cases[] = {
        {"plain", {.position = {-10, 20}, .mode = {800, 600}}, {-10, 20, 800, 600}},
        {"scaled", {.position = {1, 2}, .mode = {800, 600}, .scale = 2}, {1, 2, 400, 300}},
        {"no scale", {.position = {}, .mode = {800, 600}, .scale = 0}, {0, 0, 800, 600}},
        {"turned by a quarter", {.position = {}, .mode = {800, 600}, .transform = 1}, {0, 0, 600, 800}},
        {"turned by half", {.position = {}, .mode = {800, 600}, .transform = 2}, {0, 0, 800, 600}},
        {"mirrored", {.position = {}, .mode = {800, 600}, .transform = 4}, {0, 0, 800, 600}},
        {"mirrored and turned", {.position = {}, .mode = {800, 600}, .scale = 2, .transform = 7}, {0, 0, 300, 400}},
        {"logical",
         {.position = {1, 2},
          .mode = {800, 600},
          .scale = 2,
          .transform = 1,
          .logicalPosition = {{-3, 4}},
          .logicalSize = {{533, 400}}},
         {-3, 4, 533, 400}},
    };
    for (const Case& expected : cases) EXPECT_EQ(placeOf(expected.facts), expected.place) << expected.name;
}

std::vector<ScreenRectangle> boundsOf(OutputLayout& layout) {
    std::vector<ScreenRectangle> bounds;
    for (const OutputPlace& place : layout.outputs()) bounds.push_back(place.bounds);
    return bounds;
}

/// One and a half pixels to a point, which only xdg-output can say.
const FakeMonitor scaled{.position = {0, 0},
                         .mode = {1200, 900},
                         .scale = 2,
                         .transform = WL_OUTPUT_TRANSFORM_NORMAL,
                         .logicalPosition = {-800, 5},
                         .logicalSize = {800, 600}};

TEST(OutputLayout, ThePlacesAreThoseOfXdgOutput) {
    FakeCompositor compositor;
    compositor.plug("a", scaled);
    WaylandConnection connection(compositor.display(), patience);
    OutputLayout layout(connection);
    EXPECT_EQ(boundsOf(layout), (std::vector<ScreenRectangle>{{-800, 5, 800, 600}}));
}

TEST(OutputLayout, WithoutXdgOutputTheyAreThoseOfTheMonitors) {
    FakeCompositor compositor(false);
    compositor.plug("a", scaled);
    WaylandConnection connection(compositor.display(), patience);
    OutputLayout layout(connection);
    EXPECT_EQ(boundsOf(layout), (std::vector<ScreenRectangle>{{0, 0, 600, 450}}));
}

TEST(OutputLayout, MonitorsComeAndGo) {
    FakeCompositor compositor;
    WaylandConnection connection(compositor.display(), patience);
    OutputLayout layout(connection);
    EXPECT_EQ(layout.outputs(), std::vector<OutputPlace>{});
    compositor.plug("a", scaled);
    compositor.plug("b", FakeMonitor{});
    EXPECT_EQ(boundsOf(layout), (std::vector<ScreenRectangle>{{-800, 5, 800, 600}, {0, 0, 800, 600}}));
    compositor.unplug("a");
    EXPECT_EQ(boundsOf(layout), (std::vector<ScreenRectangle>{{0, 0, 800, 600}}));
}

TEST(OutputLayout, MonitorsHaveTheirPlacesInPoints) {
    const NestedCompositor compositor(monitors);
    WaylandConnection connection(NestedCompositor::display, patience);
    OutputLayout layout(connection);
    std::vector<ScreenRectangle> bounds = boundsOf(layout);
    std::ranges::sort(bounds, {}, &ScreenRectangle::x);
    EXPECT_EQ(bounds, (std::vector<ScreenRectangle>{{0, 0, 800, 600}, {800, 0, 800, 1200}}));
    EXPECT_EQ(layout.outputs(), layout.outputs());
}

TEST(OutputLayout, ACompositorThatEndsOrHangsFails) {
    NestedCompositor compositor(monitors);
    WaylandConnection connection(NestedCompositor::display, patience);
    WaylandConnection hasty(NestedCompositor::display, std::chrono::milliseconds(20));
    OutputLayout layout(connection), hastyLayout(hasty);
    EXPECT_EQ(layout.outputs().size(), 2U);
    compositor.pause();
    EXPECT_EQ(failureOf([&] { hastyLayout.outputs(); }), "The Wayland display \"vesk-inner\" does not answer.");
    compositor.resume();
    compositor.stop();
    EXPECT_TRUE(failureOf([&] { layout.outputs(); }).starts_with("The Wayland display \"vesk-inner\" is gone: "));
}

TEST(OutputLayout, ADisplayThatIsNotThereIsNamed) {
    EXPECT_TRUE(failureOf([] {
                    WaylandConnection("/nonexistent/wayland-9", patience);
                }).starts_with("The Wayland display \"/nonexistent/wayland-9\" cannot be reached: "));
}

} // namespace
} // namespace vesk::test
