#include "VeskShellCore/ICloudListing.hpp"

#include "tests/VeskShellCore/CloudWorld.hpp"

namespace vesk::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct ICloudListing : CloudWorld {
    std::vector<std::string> names(std::size_t limit = 200) {
        std::vector<std::string> names;
        for (const auto& entry : listDirectoryEntries(files, "/drive", std::nullopt, limit))
            names.push_back(entry.name);
        return names;
    }
    static std::vector<std::string> sorted(std::vector<CapabilityICloudEntry> entries, const std::string& locale) {
        sortEntries(entries, locale);
        std::vector<std::string> names;
        for (const auto& entry : entries) names.push_back(entry.name);
        return names;
    }
    static CapabilityICloudEntry entry(const std::string& name, bool isDirectory) {
        return {.name = name, .relativePath = name, .isDirectory = isDirectory, .sizeBytes = {}, .modifiedAtMs = {}};
    }
};

TEST_F(ICloudListing, EachItemHasItsPathAndNeitherSizeNorDate) {
    put("/drive/file", "x");
    put("/drive/folder/inner", "x");
    EXPECT_THAT(listDirectoryEntries(files, "/drive", std::nullopt, 200),
                ElementsAre(entry("file", false), entry("folder", true)));
    EXPECT_EQ(listDirectoryEntries(files, "/drive/folder", "folder", 200).front().relativePath, "folder/inner");
}

TEST_F(ICloudListing, HiddenItemsAreLeftOutAndCountNothing) {
    for (const char* name : {".a", ".b", "c", "d"}) put(std::string("/drive/") + name, "x");
    EXPECT_THAT(names(2), ElementsAre("c", "d"));
}

TEST_F(ICloudListing, ALinkToAFolderIsNone) {
    put("/elsewhere/file", "x");
    files.links["/drive/link"] = "/elsewhere";
    EXPECT_THAT(listDirectoryEntries(files, "/drive", std::nullopt, 200), ElementsAre(entry("link", false)));
}

TEST_F(ICloudListing, NoMoreIsReadThanTheLimit) {
    for (char name = 'a'; name < 'k'; ++name) put(std::string("/drive/") + name, "x");
    EXPECT_THAT(names(3), ElementsAre("a", "b", "c"));
    EXPECT_EQ(files.given, 3U);
    EXPECT_THAT(names(0), IsEmpty());
}

TEST_F(ICloudListing, ANameThatIsNoUtf8IsRepaired) {
    put("/drive/\xFF.txt", "x");
    EXPECT_THAT(names(), ElementsAre("\xEF\xBF\xBD.txt"));
}

TEST_F(ICloudListing, AFolderThatCannotBeOpenedHasTheSystemsNumber) {
    files.refused = {"/drive"};
    expectCloudFailure(EACCES, "Unable to open the requested iCloud directory.", [&] { names(); });
}

TEST_F(ICloudListing, FoldersComeFirstAndCaseIsPassedOver) {
    EXPECT_THAT(
        sorted({entry("b", false), entry("A", false), entry("zebra", true), entry("Yak", true), entry("c", false)},
               "en_US"),
        ElementsAre("Yak", "zebra", "A", "b", "c"));
    EXPECT_THAT(sorted({entry("\u00e4", false), entry("z", false)}, "sv_SE"), ElementsAre("z", "\u00e4"));
    EXPECT_THAT(sorted({entry("z", false), entry("\u00e4", false)}, "de_DE"), ElementsAre("\u00e4", "z"));
}

TEST_F(ICloudListing, EqualNamesStayInTheSystemsOrder) {
    EXPECT_THAT(sorted({entry("a", false), entry("A", false)}, "en_US"), ElementsAre("a", "A"));
    EXPECT_THAT(sorted({entry("A", false), entry("a", false)}, "en_US"), ElementsAre("A", "a"));
}

TEST_F(ICloudListing, ItemsAreCountedAtAnyDepthWithoutHiddenOnes) {
    put("/drive/a", "x");
    put("/drive/sub/b", "x");
    put("/drive/sub/deep/c", "x");
    put("/drive/.hidden", "x");
    put("/drive/.git/d", "x");
    files.links["/drive/link"] = "/drive/sub";
    EXPECT_EQ(countItems(files, "/drive"), 6) << "a, sub, b, deep, c, link";
    files.refused = {"/drive/sub/deep"};
    EXPECT_EQ(countItems(files, "/drive"), 5);
    EXPECT_EQ(countItems(files, "/none"), 0);
}

} // namespace
} // namespace vesk::test
