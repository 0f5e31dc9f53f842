#include "VeskSupport/FilePath.hpp"

#include <gtest/gtest.h>

namespace vesk {
namespace {

TEST(FilePath, AnAbsolutePathStaysAsItIs) {
    EXPECT_EQ(absolutePath("/a/b.png", "/home/dana"), "/a/b.png");
    EXPECT_EQ(absolutePath("/a/../b//c", "/home/dana"), "/a/../b//c");
    EXPECT_EQ(absolutePath("/a/b//", "/home/dana"), "/a/b");
    EXPECT_EQ(absolutePath("/", "/home/dana"), "/");
}

TEST(FilePath, ARelativePathStartsFromTheCurrentFolder) {
    EXPECT_EQ(absolutePath("b.png", "/home/dana"), "/home/dana/b.png");
    EXPECT_EQ(absolutePath("./a/../b.png", "/home/dana"), "/home/dana/b.png");
    EXPECT_EQ(absolutePath("../b.png", "/home/dana"), "/home/b.png");
    EXPECT_EQ(absolutePath("~/b/", "/"), "/~/b");
    EXPECT_EQ(absolutePath("", "/home/dana"), "/home/dana");
}

TEST(FilePath, TheFolderIsWhatStandsBeforeTheLastPart) {
    EXPECT_EQ(parentFolder("/a/b.png"), "/a");
    EXPECT_EQ(parentFolder("/a//b.png"), "/a");
    EXPECT_EQ(parentFolder("/b.png"), "/");
    EXPECT_EQ(parentFolder("/"), "/");
}

} // namespace
} // namespace vesk
