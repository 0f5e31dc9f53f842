#include "VeskPlatform/Linux/Wayland/Picture.hpp"

#include "tests/VeskPlatform/Linux/Wayland/PictureFiles.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

namespace vesk::test {
namespace {

using Pixels = std::vector<std::uint32_t>;

struct PictureTests : ::testing::Test {
    TemporaryFolder folder;
};

TEST_F(PictureTests, AnOpaquePictureIsReadAsItIs) {
    writePng(folder / "a.png", 2, 1, false, {0x112233, 0xFFFEFD});
    const auto picture = readPng(folder / "a.png");
    ASSERT_NE(picture, nullptr);
    EXPECT_EQ(picture->width, 2U);
    EXPECT_EQ(picture->height, 1U);
    EXPECT_TRUE(picture->isOpaque);
    EXPECT_EQ(picture->pixels, (Pixels{0xFF112233, 0xFFFFFEFD}));
}

TEST_F(PictureTests, ColoursAreMultipliedByTheirAlpha) {
    writePng(folder / "a.png", 1, 3, true, {0xFF102030, 0x80FF8001, 0x00FFFFFF});
    const auto picture = readPng(folder / "a.png");
    ASSERT_NE(picture, nullptr);
    EXPECT_FALSE(picture->isOpaque);
    EXPECT_EQ(picture->pixels, (Pixels{0xFF102030, 0x80804001, 0x00000000}));
}

TEST_F(PictureTests, WhatCannotBeReadIsNoPicture) {
    EXPECT_EQ(readPng(folder / "none.png"), nullptr);
    EXPECT_EQ(readPng(folder.write("text.png", "text")), nullptr);
    Pixels noise;
    for (std::uint32_t i = 0; i < 1600; ++i) noise.push_back(i * 2654435761U >> 8);
    writePng(folder / "a.png", 40, 40, false, noise);
    std::filesystem::resize_file(folder / "a.png", std::filesystem::file_size(folder / "a.png") / 2);
    EXPECT_EQ(readPng(folder / "a.png"), nullptr) << "cut off";
}

TEST_F(PictureTests, APartKeepsTheRowsOfTheWholeAndOutlivesIt) {
    auto whole =
        std::make_shared<Picture>(Picture{.width = 3, .height = 2, .isOpaque = true, .pixels = {1, 2, 3, 4, 5, 6}});
    const PicturePart part(whole, 1, 1, 2, 1);
    whole.reset();
    EXPECT_EQ(part.width(), 2U);
    EXPECT_EQ(part.height(), 1U);
    EXPECT_EQ(part.stride(), 3U);
    EXPECT_TRUE(part.isOpaque());
    EXPECT_EQ(part.pixels()[0], 5U);
}

} // namespace
} // namespace vesk::test
