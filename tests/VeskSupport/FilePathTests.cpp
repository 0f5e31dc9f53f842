#include "VeskSupport/FilePath.hpp"

#include <gtest/gtest.h>

namespace vesk {
namespace {

TEST(FilePath, RelativePathsStartAtTheCurrentDirectory) {
    EXPECT_EQ(absolutePath("a/b", "/work"), "/work/a/b");
    EXPECT_EQ(absolutePath("/a", "/work"), "/a");
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
    EXPECT_EQ(parentPath("/a/b"), "/a");
    EXPECT_EQ(parentPath("/a"), "/");
    EXPECT_EQ(parentPath("/"), "/");
}

TEST(FilePath, AnExtensionFollowsTheLastDot) {
    const std::pair<const char*, const char*> cases[] = {
        {"/a/b.pdf", "pdf"}, {"b.tar.GZ", "GZ"}, {"/a.b/c", ""}, {".hidden", ""}, {"a.", ""}, {"a", ""}, {"a.b c", ""},
    };
    for (const auto& [path, extension] : cases) EXPECT_EQ(pathExtension(path), extension) << path;
}

} // namespace
} // namespace vesk
