#include "VeskPlatform/Linux/Images/PixmanScreenImages.hpp"

#include "VeskPlatform/Linux/Desktop/PixelImage.hpp"
#include "VeskPlatform/Linux/Images/PngEffort.hpp"
#include "VeskPlatform/Portable/FileDescriptor.hpp"
#include "tests/support/ReadPng.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <array>
#include <fcntl.h>
#include <functional>
#include <gmock/gmock.h>
#include <random>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace vesk::test {
namespace {

using Pixels = std::vector<std::uint32_t>;

class TestImage : public PixelImage {
public:
    TestImage(std::size_t width, std::size_t height, const std::function<std::uint32_t(std::size_t, std::size_t)>& at,
              bool isOpaque = true, std::size_t gap = 0)
        : width_(width), height_(height), stride_(width + gap), isOpaque_(isOpaque),
          pixels_(stride_ * height, 0xDEADBEEF) {
        for (std::size_t y = 0; y < height; ++y)
            for (std::size_t x = 0; x < width; ++x) pixels_[y * stride_ + x] = at(x, y);
    }
    static TestImage plain(std::size_t width, std::size_t height, std::uint32_t colour, bool isOpaque = true) {
        return {width, height, [colour](std::size_t, std::size_t) { return colour; }, isOpaque};
    }
    std::size_t width() const override { return width_; }
    std::size_t height() const override { return height_; }
    const std::uint32_t* pixels() const override { return pixels_.data(); }
    std::size_t stride() const override { return stride_; }
    bool isOpaque() const override { return isOpaque_; }

private:
    std::size_t width_, height_, stride_;
    bool isOpaque_;
    Pixels pixels_;
};

Pixels pixelsOf(const ScreenImage& image) {
    const auto& picture = dynamic_cast<const PixelImage&>(image);
    Pixels pixels;
    for (std::size_t y = 0; y < picture.height(); ++y)
        pixels.insert(pixels.end(), picture.pixels() + y * picture.stride(),
                      picture.pixels() + y * picture.stride() + picture.width());
    return pixels;
}

class PixmanScreenImagesTests : public ::testing::Test {
protected:
    ReadPng written(const ScreenImage& image) {
        const auto file = images.createPng(path);
        EXPECT_TRUE(file && file->finalize(image));
        return readPng(path);
    }

    PixmanScreenImages images;
    TemporaryFolder folder;
    std::string path = folder / "picture.png";
};

TEST_F(PixmanScreenImagesTests, PicturesStandWhereTheyWereDrawnAndTheRestIsTransparent) {
    const auto canvas = images.createContext(5, 3);
    ASSERT_NE(canvas, nullptr);
    canvas->draw(TestImage(
                     2, 2, [](std::size_t x, std::size_t y) { return std::uint32_t(0x10 * x + y); }, true, 3),
                 {1, 1, 2, 2});
    canvas->draw(TestImage::plain(1, 1, 0x80404040, false), {4, 0, 1, 1});
    const auto image = canvas->makeImage();
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(pixelsOf(*image),
              (Pixels{0, 0, 0, 0, 0x80404040, 0, 0xFF000000, 0xFF000010, 0, 0, 0, 0xFF000001, 0xFF000011, 0, 0}));
    EXPECT_FALSE(dynamic_cast<const PixelImage&>(*image).isOpaque());
    EXPECT_EQ(canvas->makeImage(), nullptr) << "it is used up";
    canvas->draw(TestImage::plain(1, 1, 0), {0, 0, 1, 1});
}

TEST_F(PixmanScreenImagesTests, PixelsReplaceWhatWasThere) {
    const auto canvas = images.createContext(2, 1);
    canvas->draw(TestImage::plain(2, 1, 0xFFFFFF), {0, 0, 2, 1});
    canvas->draw(TestImage::plain(1, 1, 0x00000000, false), {1, 0, 1, 1});
    const auto image = canvas->makeImage();
    EXPECT_EQ(pixelsOf(*image), (Pixels{0xFFFFFFFF, 0}));
    EXPECT_FALSE(dynamic_cast<const PixelImage&>(*image).isOpaque());
}

TEST_F(PixmanScreenImagesTests, ACanvasIsOpaqueWhenOpaquePicturesCoverIt) {
    const auto canvas = images.createContext(4, 4);
    canvas->draw(TestImage::plain(2, 4, 0), {0, 0, 2, 4});
    canvas->draw(TestImage::plain(3, 4, 0), {2, 0, 3, 4});
    EXPECT_TRUE(dynamic_cast<const PixelImage&>(*canvas->makeImage()).isOpaque());
}

TEST_F(PixmanScreenImagesTests, WhatLiesOutsideIsCutOff) {
    const auto canvas = images.createContext(2, 2);
    const TestImage image(3, 3, [](std::size_t x, std::size_t y) { return std::uint32_t(y * 3 + x); });
    canvas->draw(image, {-1, -1, 3, 3});
    canvas->draw(image, {50, 50, 3, 3});
    canvas->draw(image, {-1e12, 0, 3, 3});
    canvas->draw(image, {0, 0, 0, 3});
    EXPECT_EQ(pixelsOf(*canvas->makeImage()), (Pixels{0xFF000004, 0xFF000005, 0xFF000007, 0xFF000008}));
}

TEST_F(PixmanScreenImagesTests, APictureOfTwiceTheSizeIsAveraged) {
    const auto canvas = images.createContext(2, 1);
    const TestImage image(4, 2, [](std::size_t x, std::size_t y) {
        return x < 2 ? 0xFF8040U : (x + y) % 2 == 0 ? 0x000000U : 0xC8C8C8U;
    });
    canvas->draw(image, {0, 0, 2, 1});
    const Pixels pixels = pixelsOf(*canvas->makeImage());
    EXPECT_EQ(pixels[0] >> 24U, 0xFFU);
    for (const unsigned int shift : {0U, 8U, 16U}) {
        EXPECT_NEAR(double(pixels[1] >> shift & 0xFF), 0x64, 24) << "half of the light";
        EXPECT_NEAR(double(pixels[0] >> shift & 0xFF), double(0xFF8040U >> shift & 0xFF), 24);
    }
}

TEST_F(PixmanScreenImagesTests, ScalingKeepsEvenColoursToTheEdges) {
    for (const auto& [from, to] : {std::pair(10U, 20U), std::pair(20U, 10U), std::pair(7U, 13U), std::pair(13U, 7U)}) {
        const auto canvas = images.createContext(to, to);
        canvas->draw(TestImage::plain(from, from, 0x336699), {0, 0, double(to), double(to)});
        const auto image = canvas->makeImage();
        EXPECT_THAT(pixelsOf(*image), ::testing::Each(0xFF336699)) << from << " to " << to;
        EXPECT_TRUE(dynamic_cast<const PixelImage&>(*image).isOpaque());
    }
}

TEST_F(PixmanScreenImagesTests, ACanvasThatIsTooLargeIsNone) {
    EXPECT_EQ(images.createContext(0, 10), nullptr);
    EXPECT_EQ(images.createContext(10, 0), nullptr);
    EXPECT_EQ(images.createContext(1'000'000, 10), nullptr);
    EXPECT_EQ(images.createContext(10, std::size_t{1} << 40U), nullptr);
}

TEST_F(PixmanScreenImagesTests, AnOpaquePictureIsWrittenWithoutAlpha) {
    const TestImage image(
        301, 97, [](std::size_t x, std::size_t y) { return std::uint32_t(x * 70001 + y * 257) & 0xFFFFFF; }, true, 5);
    const ReadPng read = written(image);
    EXPECT_EQ(read.width, 301U);
    EXPECT_EQ(read.height, 97U);
    EXPECT_FALSE(read.hasAlpha);
    Pixels expected = pixelsOf(image);
    for (std::uint32_t& pixel : expected) pixel |= 0xFF000000;
    EXPECT_EQ(read.pixels, expected);
}

TEST_F(PixmanScreenImagesTests, ATransparentPictureIsWrittenWithPlainColours) {
    const Pixels source{0x00000000, 0xFF102030, 0x80402010, 0x01010000};
    const ReadPng read = written(TestImage(
        4, 1, [&](std::size_t x, std::size_t) { return source[x]; }, false));
    EXPECT_TRUE(read.hasAlpha);
    EXPECT_EQ(read.pixels, (Pixels{0x00000000, 0xFF102030, 0x80804020, 0x01FF0000}));
}

TEST_F(PixmanScreenImagesTests, AnExistingFileIsReplaced) {
    folder.write("picture.png", std::string(100'000, 'x'));
    EXPECT_EQ(written(TestImage::plain(3, 2, 0x123456)).pixels, Pixels(6, 0xFF123456));
    EXPECT_LT(std::filesystem::file_size(path), 200U);
}

TEST_F(PixmanScreenImagesTests, OpeningEmptiesTheFile) {
    folder.write("picture.png", "old");
    const auto file = images.createPng(path);
    EXPECT_EQ(folder.read("picture.png"), "");
}

TEST_F(PixmanScreenImagesTests, AFileThatCannotBeOpenedIsNone) {
    EXPECT_EQ(images.createPng(folder / "absent/picture.png"), nullptr);
    EXPECT_EQ(images.createPng(folder.path()), nullptr);
}

TEST_F(PixmanScreenImagesTests, APipeIsWrittenToWhereSomebodyReads) {
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    EXPECT_EQ(images.createPng(path), nullptr);
    const FileDescriptor reader(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    const auto file = images.createPng(path);
    ASSERT_NE(file, nullptr);
    EXPECT_TRUE(file->finalize(TestImage::plain(3, 2, 0)));
    std::array<char, 4> head{};
    EXPECT_EQ(::read(reader.get(), head.data(), head.size()), 4);
    EXPECT_EQ(std::string(head.data() + 1, 3), "PNG");
}

TEST_F(PixmanScreenImagesTests, AFullDiskIsAFailure) {
    const auto file = images.createPng("/dev/full");
    ASSERT_NE(file, nullptr);
    EXPECT_FALSE(file->finalize(TestImage::plain(3, 2, 0)));
    EXPECT_FALSE(file->finalize(TestImage::plain(3, 2, 0))) << "it has ended";
}

TEST_F(PixmanScreenImagesTests, TheEffortFollowsTheContent) {
    std::mt19937 random(1);
    const TestImage photograph(200, 200, [&](std::size_t, std::size_t) { return std::uint32_t(random()) & 0xFFFFFF; });
    const TestImage drawing = TestImage::plain(200, 200, 0xFFFFFF), point = TestImage::plain(1, 1, 0);
    EXPECT_NE(pngEffort(photograph), pngEffort(drawing));
    EXPECT_EQ(pngEffort(point), pngEffort(drawing));
}

} // namespace
} // namespace vesk::test
