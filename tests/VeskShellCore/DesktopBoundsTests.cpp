#include "VeskShellCore/DesktopBounds.hpp"

#include "tests/VeskShellCore/ControlFailure.hpp"
#include "tests/fakes/FakeDisplays.hpp"

#include <gtest/gtest.h>

namespace vesk::test {
namespace {

std::string failure(FakeDisplays& displays) {
    return controlFailureOf([&] { currentDesktopBounds(displays); });
}

TEST(DesktopBounds, AUnionHoldsAllRectangles) {
    EXPECT_EQ(unionOf({}), std::nullopt);
    EXPECT_EQ(unionOf({{-3, 4, 5, 6}}), (ScreenRectangle{-3, 4, 5, 6}));
    EXPECT_EQ(unionOf({{0, 0, 10, 10}, {-5, 2, 3, 20}, {8, -1, 4, 4}}), (ScreenRectangle{-5, -1, 17, 23}));
    EXPECT_EQ(unionOf({{10, 10, 5, 5}, {0, 0, 0, 0}}), (ScreenRectangle{0, 0, 15, 15})) << "a point counts too";
}

TEST(DesktopBounds, TheDesktopIsTheUnionOfItsDisplays) {
    FakeDisplays displays;
    displays.all = {{.identifier = 1, .place = {0, 0, 1440, 900}},
                    {.identifier = 2, .place = {-1280, 100, 1280, 1024}}};
    EXPECT_EQ(currentDesktopBounds(displays), (ScreenRectangle{-1280, 0, 2720, 1124}));
}

TEST(DesktopBounds, ADisplayThatCameAfterTheCountIsLeftOut) {
    FakeDisplays displays;
    displays.all = {{.identifier = 1, .place = {0, 0, 1440, 900}}};
    displays.whenCounted = [&] { displays.all.push_back({.identifier = 2, .place = {1440, 0, 10, 10}}); };
    EXPECT_EQ(currentDesktopBounds(displays), (ScreenRectangle{0, 0, 1440, 900}));
}

TEST(DesktopBounds, ADisplayThatWentAfterTheCountIsNotMissed) {
    FakeDisplays displays;
    displays.all = {{.identifier = 1, .place = {0, 0, 1440, 900}}, {.identifier = 2, .place = {1440, 0, 10, 10}}};
    displays.whenCounted = [&] { displays.all.pop_back(); };
    EXPECT_EQ(currentDesktopBounds(displays), (ScreenRectangle{0, 0, 1440, 900}));
}

TEST(DesktopBounds, FailuresHaveTheirCodes) {
    FakeDisplays displays;
    const std::string unavailable = "88 Desktop bounds are unavailable for computer control.";
    EXPECT_EQ(failure(displays), unavailable) << "no displays";
    displays.all = {{.identifier = 1, .place = {5, 5, 0, 900}}};
    EXPECT_EQ(failure(displays), unavailable) << "no width";
    displays.all = {{.identifier = 1, .place = {5, 5, 1440, 0}}};
    EXPECT_EQ(failure(displays), unavailable) << "no height";
    displays.listFails = true;
    EXPECT_EQ(failure(displays), "87 Unable to load active display bounds.");
    displays.countFails = true;
    EXPECT_EQ(failure(displays), "86 Unable to enumerate active displays.");
}

} // namespace
} // namespace vesk::test
