#include "VeskShellCore/ReelGeometry.hpp"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace vesk {
namespace {

constexpr MediaSize frame{1080, 1920};
/// How a phone that is held upright marks its sideways pictures of 1920 x 1080.
constexpr AffineTransform quarterTurn{.a = 0, .b = 1, .c = -1, .d = 0, .tx = 1080, .ty = 0};

/// Where the transform puts the picture.
MediaRectangle placed(const MediaSize& size, const AffineTransform& preferred) {
    return applied(aspectFitTransform(size, preferred, frame), {0, 0, size.width, size.height});
}

TEST(ReelGeometry, APictureIsLetterboxedAndNeverCropped) {
    EXPECT_EQ(letterboxed({1000, 1000}, frame), (MediaRectangle{0, 420, 1080, 1080}));
    EXPECT_EQ(letterboxed({540, 960}, frame), (MediaRectangle{0, 0, 1080, 1920}));
    EXPECT_EQ(letterboxed({100, 400}, frame), (MediaRectangle{300, 0, 480, 1920}));
    EXPECT_EQ(letterboxed({4000, 1000}, frame), (MediaRectangle{0, 825, 1080, 270}));
}

TEST(ReelGeometry, ClipsAreFittedIntoTheMiddle) {
    EXPECT_EQ(placed({1080, 1920}, {}), (MediaRectangle{0, 0, 1080, 1920}));
    EXPECT_EQ(placed({1920, 1080}, {}), (MediaRectangle{0, 656.25, 1080, 607.5}));
}

TEST(ReelGeometry, ATurnedClipIsShownUpright) {
    EXPECT_EQ(placed({1920, 1080}, quarterTurn), (MediaRectangle{0, 0, 1080, 1920}));
    const AffineTransform whole = aspectFitTransform({1920, 1080}, quarterTurn, frame);
    // The stored top left corner is the upright top right one.
    EXPECT_EQ(applied(whole, {0, 0, 0, 0}), (MediaRectangle{1080, 0, 0, 0}));
}

TEST(ReelGeometry, AMirroredClipStaysMirrored) {
    const AffineTransform whole = aspectFitTransform({540, 960}, {.a = -1}, frame);
    EXPECT_EQ(applied(whole, {0, 0, 0, 0}).x, 1080);
    EXPECT_EQ(applied(whole, {540, 0, 0, 0}).x, 0);
}

TEST(ReelGeometry, WhatTheTransformShiftsIsShiftedBack) {
    EXPECT_EQ(placed({540, 960}, {.tx = 77, .ty = -900}), (MediaRectangle{0, 0, 1080, 1920}));
}

TEST(ReelGeometry, WithoutASizeThereIsNothingToFit) {
    const double none = std::numeric_limits<double>::quiet_NaN();
    for (const MediaSize& size : {MediaSize{0, 100}, MediaSize{100, 0}, MediaSize{none, 100}, MediaSize{100, none}})
        EXPECT_EQ(aspectFitTransform(size, {.tx = 3}, frame), AffineTransform());
}

TEST(ReelGeometry, TransformsFollowEachOther) {
    const AffineTransform doubled{.a = 2, .d = 2}, shifted{.tx = 10, .ty = 20};
    EXPECT_EQ(applied(concatenated(doubled, shifted), {1, 1, 1, 1}), (MediaRectangle{12, 22, 2, 2}));
    EXPECT_EQ(applied(concatenated(shifted, doubled), {1, 1, 1, 1}), (MediaRectangle{22, 42, 2, 2}));
}

TEST(ReelGeometry, TimesAddUpExactly) {
    EXPECT_EQ(sum({90, 30}, {90, 30}), (MediaTime{180, 30}));
    EXPECT_EQ(sum({1, 3}, {1, 4}), (MediaTime{7, 12}));
    EXPECT_EQ(sum({0, 30}, {4004, 1001}), (MediaTime{120120, 30030}));
    EXPECT_DOUBLE_EQ(seconds(sum({99, 30}, {1, 90'000})), 3.3 + 1.0 / 90'000);
}

TEST(ReelGeometry, WithoutACommonTimescaleTheLargestDoes) {
    const MediaTime total = sum({2'147'483'647, 2'147'483'647}, {1'000'003, 1'000'003});
    EXPECT_EQ(total, (MediaTime{2 * std::int64_t{2'147'483'647}, 2'147'483'647}));
}

} // namespace
} // namespace vesk
