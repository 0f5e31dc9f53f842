#pragma once

#include "VeskPlatform/ScreenImages.hpp"

#include <gtest/gtest.h>
#include <memory>

namespace vesk::test {

/// What every ScreenImages owes. `World` has `images()`, a `picture()` of 40 to 30 pixels as its session's displays
/// make them, and a `path` to write to.
template <class World> class ScreenImagesContract : public ::testing::Test {
protected:
    World world;
    ScreenImages& images = world.images();
};

TYPED_TEST_SUITE_P(ScreenImagesContract);

TYPED_TEST_P(ScreenImagesContract, ACanvasBecomesAPictureOfItsSize) {
    const auto canvas = this->images.createContext(100, 50);
    ASSERT_NE(canvas, nullptr);
    const auto picture = this->world.picture();
    for (const ScreenRectangle& place :
         {ScreenRectangle{0, 0, 40, 30}, ScreenRectangle{60, 20, 80, 60}, ScreenRectangle{-10, -10, 20, 15},
          ScreenRectangle{200, 0, 40, 30}, ScreenRectangle{1.5, 2.5, 40.25, 30.75}})
        canvas->draw(*picture, place);
    const auto image = canvas->makeImage();
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->width(), 100U);
    EXPECT_EQ(image->height(), 50U);
}

TYPED_TEST_P(ScreenImagesContract, APictureIsWritten) {
    const auto image = this->images.createContext(1, 1)->makeImage();
    const auto file = this->images.createPng(this->world.path);
    ASSERT_TRUE(file && image);
    EXPECT_TRUE(file->finalize(*image));
}

REGISTER_TYPED_TEST_SUITE_P(ScreenImagesContract, ACanvasBecomesAPictureOfItsSize, APictureIsWritten);

} // namespace vesk::test
