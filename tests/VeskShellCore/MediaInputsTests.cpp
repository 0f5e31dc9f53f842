#include "VeskShellCore/MediaInputs.hpp"

#include <gtest/gtest.h>

namespace vesk {
namespace {

CapabilityMediaComposeInput input(std::string path, std::optional<std::string> kind = std::nullopt,
                                  std::optional<std::string> mimeType = std::nullopt,
                                  std::optional<std::string> fileName = std::nullopt) {
    return {std::move(path), std::move(kind), std::move(mimeType), std::move(fileName)};
}

TEST(MediaInputs, KindTypeOrExtensionMakeAnImage) {
    for (const auto& each :
         {input("/a", "image"), input("/a", "IMAGE"), input("/a", {}, "image/x"), input("/a", {}, "IMAGE/PNG"),
          input("/a", "other", "image/png"), input("/a.mov", "video", "image/png"), input("/a", {}, {}, "B.JPG")})
        EXPECT_TRUE(isImage(each)) << each.path;
    for (const char* extension : {"jpg", "jpeg", "png", "heic", "heif", "webp", "gif", "JPG", "HeIc"})
        EXPECT_TRUE(isImage(input(std::string("/a.") + extension))) << extension;
    for (const auto& each : {input("/a"), input("/a.bmp"), input("/a", "images"), input("/a", {}, "imagex/png"),
                             input("/a.png", {}, {}, "b"), input("/png")})
        EXPECT_FALSE(isImage(each)) << each.path;
}

TEST(MediaInputs, KindTypeOrExtensionMakeAVideo) {
    for (const auto& each : {input("/a", "Video"), input("/a", {}, "VIDEO/mp4"), input("/a", {}, {}, "b.MOV")})
        EXPECT_TRUE(isVideo(each)) << each.path;
    for (const char* extension : {"mp4", "m4v", "mov", "quicktime"})
        EXPECT_TRUE(isVideo(input(std::string("/a.") + extension))) << extension;
    for (const auto& each : {input("/a"), input("/a.avi"), input("/a", "videos"), input("/a", {}, "video")})
        EXPECT_FALSE(isVideo(each)) << each.path;
}

TEST(MediaInputs, AreNamedAsTheUserKnowsThem) {
    EXPECT_EQ(displayName(input("/a/b.png", {}, {}, "Holiday.png")), "Holiday.png");
    EXPECT_EQ(displayName(input("/a/b.png")), "b.png");
    EXPECT_EQ(displayName(input("b.png")), "b.png");
    EXPECT_EQ(displayName(input("/a/b/../c.png/")), "c.png");
}

} // namespace
} // namespace vesk
