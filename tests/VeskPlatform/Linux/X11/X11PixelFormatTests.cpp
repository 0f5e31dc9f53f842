#include "VeskPlatform/Linux/X11/X11PixelFormat.hpp"

#include <gtest/gtest.h>

namespace vesk::test {
namespace {

TEST(X11PixelFormatTests, EachLayoutOfPixelsIsUnderstood) {
    struct Case {
        const char* name;
        X11PixelFormat format;
        std::vector<std::uint8_t> bytes;
    };
    const Case cases[]{
        {"least significant first", {32, 32, false, 0xFF0000, 0xFF00, 0xFF}, {0x30, 0x20, 0x10, 0x99}},
        {"most significant first", {32, 32, true, 0xFF0000, 0xFF00, 0xFF}, {0x99, 0x10, 0x20, 0x30}},
        {"blue first", {32, 32, false, 0xFF, 0xFF00, 0xFF0000}, {0x10, 0x20, 0x30, 0x99}},
        {"three bytes", {24, 32, false, 0xFF0000, 0xFF00, 0xFF}, {0x30, 0x20, 0x10, 0x99}},
        {"three bytes, most significant first", {24, 8, true, 0xFF0000, 0xFF00, 0xFF}, {0x10, 0x20, 0x30}},
        {"ten bits", {32, 32, false, 0x3FF00000, 0xFFC00, 0x3FF}, {0xC0, 0x00, 0x02, 0x04}},
    };
    for (const Case& each : cases) {
        const auto pixels = convertedPixels(each.format, each.bytes.data(), 1, 1);
        ASSERT_EQ(pixels.size(), 1U) << each.name;
        EXPECT_EQ(pixels[0], 0xFF102030U) << each.name << std::hex << " " << pixels[0];
    }
}

TEST(X11PixelFormatTests, SixteenBitsReachFromBlackToWhite) {
    const X11PixelFormat format{16, 32, false, 0xF800, 0x7E0, 0x1F};
    const std::uint8_t bytes[]{0xFF, 0xFF, 0x00, 0x00, 0x00, 0xF8, 0x10, 0x84};
    EXPECT_EQ(convertedPixels(format, bytes, 4, 1),
              (std::vector<std::uint32_t>{0xFFFFFFFF, 0xFF000000, 0xFFFF0000, 0xFF848284}));
}

TEST(X11PixelFormatTests, RowsEndAtTheirPad) {
    const X11PixelFormat format{24, 32, false, 0xFF0000, 0xFF00, 0xFF};
    EXPECT_EQ(format.rowLength(1), 4U);
    EXPECT_EQ(format.rowLength(4), 12U);
    const std::uint8_t bytes[]{1, 0, 0, 99, 2, 0, 0, 99};
    EXPECT_EQ(convertedPixels(format, bytes, 1, 2), (std::vector<std::uint32_t>{0xFF000001, 0xFF000002}));
}

TEST(X11PixelFormatTests, OnlyTheMachinesOwnLayoutNeedsNoConversion) {
    EXPECT_TRUE((X11PixelFormat{32, 32, false, 0xFF0000, 0xFF00, 0xFF}.isNative()));
    EXPECT_FALSE((X11PixelFormat{32, 32, true, 0xFF0000, 0xFF00, 0xFF}.isNative()));
    EXPECT_FALSE((X11PixelFormat{32, 32, false, 0xFF, 0xFF00, 0xFF0000}.isNative()));
    EXPECT_FALSE((X11PixelFormat{24, 32, false, 0xFF0000, 0xFF00, 0xFF}.isNative()));
    EXPECT_FALSE((X11PixelFormat{32, 64, false, 0xFF0000, 0xFF00, 0xFF}.isNative()));
}

} // namespace
} // namespace vesk::test
