#include "VeskShellCore/ICloudPaths.hpp"

#include "VeskShellCore/ICloudError.hpp"

#include <gtest/gtest.h>

namespace vesk {
namespace {

std::string failure(const std::string& path) {
    try {
        return "normalised to " + normalizeRelativePath(path).value_or("the root");
    } catch (const ICloudError& error) {
        EXPECT_EQ(error.domain(), "VeskICloudOperations");
        EXPECT_EQ(error.code(), 400);
        return error.description();
    }
}

TEST(ICloudPaths, TheRootHasManyNames) {
    EXPECT_EQ(normalizeRelativePath(std::nullopt), std::nullopt);
    for (const char* path : {"", " \n", ".", " . ", "./", "././/.", ". / .", "\xE3\x80\x80"})
        EXPECT_EQ(normalizeRelativePath(path), std::nullopt) << path;
}

TEST(ICloudPaths, SlashesDotsAndBlanksAreDropped) {
    const std::pair<const char*, const char*> cases[] = {
        {"a", "a"},
        {"a/b", "a/b"},
        {"a//b///c/", "a/b/c"},
        {"./a/./b/.", "a/b"},
        {" a / b ", "a/b"},
        {"a/ /b", "a/b"},
        {"a/ . /b", "a/b"},
        {"\ta b\n/\xC2\xA0"
         "c",
         "a b/c"},
        {"a..b", "a..b"},
        {"...", "..."},
        {"..a/b..", "..a/b.."},
        {".hidden", ".hidden"},
        {"a\\..\\b", "a\\..\\b"},
        {"%2e%2e/a", "%2e%2e/a"},
        {"\xEF\xBC\x8E\xEF\xBC\x8E/a", "\xEF\xBC\x8E\xEF\xBC\x8E/a"},
        {"a/\xFF\xFE", "a/\xFF\xFE"},
        {"~/a", "~/a"},
    };
    for (const auto& [path, normalised] : cases) EXPECT_EQ(normalizeRelativePath(path), normalised) << path;
    const std::string longName(5000, 'n');
    EXPECT_EQ(normalizeRelativePath(longName + "//" + longName), longName + "/" + longName);
}

TEST(ICloudPaths, AnAbsolutePathIsRefused) {
    for (const char* path : {"/", "/a", " /a", "//a", "/..", "\n/"})
        EXPECT_EQ(failure(path), "iCloud paths must be relative to the selected iCloud root.") << path;
}

TEST(ICloudPaths, ADotDotPieceIsRefusedWhereverItLeads) {
    for (const char* path : {"..", "../a", "a/..", "a/../b", "a/b/../..", " .. ", "a/ .. /b", "..\t/a", "./..",
                             "a//..//b", "\xC2\xA0..", "a/..\xE3\x80\x80/b", "..\n"})
        EXPECT_EQ(failure(path), "iCloud paths cannot traverse outside the selected iCloud root.") << path;
}

TEST(ICloudPaths, ANameIsAppendedToItsBase) {
    EXPECT_EQ(appendRelativePath(std::nullopt, "n"), "n");
    EXPECT_EQ(appendRelativePath("", "n"), "n");
    EXPECT_EQ(appendRelativePath("a/b", "n"), "a/b/n");
}

} // namespace
} // namespace vesk
