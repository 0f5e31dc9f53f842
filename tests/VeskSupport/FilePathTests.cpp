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

TEST(FilePath, StandardizingDropsWhatLeadsNowhere) {
    const std::pair<const char*, const char*> cases[] = {
        {"/a/b", "/a/b"},
        {"/a//b/", "/a/b"},
        {"/a/./b/.", "/a/b"},
        {"/a/x/../b", "/a/b"},
        {"/../../a", "/a"},
        {"/a/..", "/"},
        {"/", "/"},
        {"//", "/"},
        {"/a/...", "/a/..."},
        {"/a/..b/c", "/a/..b/c"},
        {"/a/b/../../../c", "/c"},
    };
    for (const auto& [path, standardized] : cases) EXPECT_EQ(standardizedPath(path), standardized) << path;
}

TEST(FilePath, ComponentsOfAStandardizedPath) {
    EXPECT_EQ(lastPathComponent("/a/b.pdf"), "b.pdf");
    EXPECT_EQ(lastPathComponent("b.pdf"), "b.pdf");
    EXPECT_EQ(lastPathComponent("/"), "/");
}

TEST(FilePath, AnExtensionFollowsTheLastDot) {
    const std::pair<const char*, const char*> cases[] = {
        {"/a/b.pdf", "pdf"}, {"b.tar.GZ", "GZ"}, {"/a.b/c", ""}, {".hidden", ""}, {"a.", ""}, {"a", ""}, {"a.b c", ""},
    };
    for (const auto& [path, extension] : cases) EXPECT_EQ(pathExtension(path), extension) << path;
}

} // namespace
} // namespace vesk
