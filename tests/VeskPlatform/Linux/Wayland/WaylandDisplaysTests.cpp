#include "VeskPlatform/Linux/Wayland/WaylandDisplays.hpp"

#include <gtest/gtest.h>

namespace vesk::test {
namespace {

/// Two monitors; the picture of both has `width` by `height` pixels, each with its place as the number.
class WaylandDisplaysTests : public ::testing::Test {
protected:
    std::vector<OutputPlace> outputs{{11, {0, 0, 800, 600}}, {12, {-400, 100, 400, 300}}};
    std::size_t width = 1200, height = 600;
    bool refuses = false;
    int taken = 0;
    WaylandDisplays displays{[this] { return outputs; }, [this] { return take(); }};

    std::shared_ptr<const Picture> take() {
        ++taken;
        if (refuses) return nullptr;
        Picture picture{.width = width, .height = height, .isOpaque = true, .pixels = {}};
        for (std::uint32_t i = 0; i < width * height; ++i) picture.pixels.push_back(i);
        return std::make_shared<const Picture>(std::move(picture));
    }
    /// "LEFT,TOP WIDTHxHEIGHT" in the picture.
    std::string cut(DisplayIdentifier display) {
        const auto image = displays.capture(display);
        if (!image) return "none";
        const auto& part = dynamic_cast<const PixelImage&>(*image);
        EXPECT_EQ(part.stride(), width);
        const std::size_t first = *part.pixels();
        return std::to_string(first % width) + "," + std::to_string(first / width) + " " + std::to_string(part.width())
               + "x" + std::to_string(part.height());
    }
};

TEST_F(WaylandDisplaysTests, MonitorsAreListedInTheirOrder) {
    EXPECT_EQ(displays.count(), 2U);
    EXPECT_EQ(displays.list(2), (std::vector<DisplayIdentifier>{11, 12}));
    EXPECT_EQ(displays.list(1), (std::vector<DisplayIdentifier>{11}));
    EXPECT_EQ(displays.bounds(12), (ScreenRectangle{-400, 100, 400, 300}));
    EXPECT_EQ(displays.bounds(13), ScreenRectangle{});
    outputs.clear();
    EXPECT_EQ(displays.count(), 0U);
    EXPECT_EQ(displays.list(5), std::vector<DisplayIdentifier>{});
}

TEST_F(WaylandDisplaysTests, OnePictureIsCutIntoTheMonitors) {
    EXPECT_EQ(cut(11), "400,0 800x600");
    EXPECT_EQ(cut(12), "0,100 400x300");
    EXPECT_EQ(taken, 1);
}

TEST_F(WaylandDisplaysTests, AMonitorThatIsCapturedAgainHasANewPicture) {
    cut(11);
    cut(11);
    EXPECT_EQ(taken, 2);
    cut(12);
    EXPECT_EQ(taken, 2);
    cut(12);
    EXPECT_EQ(taken, 3);
    cut(11);
    EXPECT_EQ(taken, 3) << "the last picture shows it too";
}

TEST_F(WaylandDisplaysTests, APictureOfMorePixelsThanPointsIsCutToScale) {
    width = 2400;
    height = 1200;
    EXPECT_EQ(cut(12), "0,200 800x600");
    width = 1500;
    height = 750;
    EXPECT_EQ(cut(12), "0,125 500x375");
}

TEST_F(WaylandDisplaysTests, NeighboursShareNoPixelAndLeaveNoneOut) {
    outputs = {{1, {0, 0, 1, 1}}, {2, {1, 0, 1, 1}}, {3, {2, 0, 1, 1}}};
    width = 10;
    height = 1;
    EXPECT_EQ(cut(1), "0,0 3x1");
    EXPECT_EQ(cut(2), "3,0 4x1");
    EXPECT_EQ(cut(3), "7,0 3x1");
}

TEST_F(WaylandDisplaysTests, ThePictureBelongsToTheMonitorsAsTheyStood) {
    cut(11);
    outputs = {{12, {0, 0, 400, 300}}};
    EXPECT_EQ(cut(12), "0,100 400x300");
}

TEST_F(WaylandDisplaysTests, WhatIsNotThereCannotBeCaptured) {
    EXPECT_EQ(cut(13), "none");
    outputs.push_back({14, {0, 0, 0, 600}});
    EXPECT_EQ(cut(14), "none");
    outputs.clear();
    EXPECT_EQ(cut(11), "400,0 800x600") << "the picture that was taken before";
    EXPECT_EQ(cut(11), "none");
}

TEST_F(WaylandDisplaysTests, ARefusalIsNotRemembered) {
    refuses = true;
    EXPECT_EQ(cut(11), "none");
    refuses = false;
    EXPECT_EQ(cut(11), "400,0 800x600");
}

TEST_F(WaylandDisplaysTests, AMonitorOfLessThanAPixelHasNoPicture) {
    outputs.push_back({15, {0, 0, 0.1, 600}});
    EXPECT_EQ(cut(15), "none");
}

} // namespace
} // namespace vesk::test
