#include "VeskPlatform/Linux/Vdir/CollectionTree.hpp"

#include "VeskSupport/ErrorRecord.hpp"
#include "tests/support/Privileges.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <filesystem>
#include <gmock/gmock.h>
#include <sys/stat.h>

namespace vesk::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
namespace fs = std::filesystem;

struct CollectionTreeTests : testing::Test {
    TemporaryFolder root;
    std::vector<std::string> unreadable;

    std::vector<vdir::Collection> find(const std::string& path) {
        return vdir::findCollections(path, ".ics", [&](const std::string& folder, int errnoValue) {
            unreadable.push_back(folder.substr(root.path().size()) + " " + std::to_string(errnoValue));
        });
    }
    /// "identifier|title|source" of each.
    std::vector<std::string> found() {
        std::vector<std::string> result;
        for (const auto& c : find(root.path())) result.push_back(c.identifier + "|" + c.title + "|" + c.sourceTitle);
        return result;
    }
    void folder(const std::string& name) { fs::create_directories(root / name); }
};

TEST_F(CollectionTreeTests, AFolderWithAnItemANameAColorOrNoFolderIsACollection) {
    struct Case {
        const char *name, *file;
        bool isCollection;
    };
    for (const Case& c : {Case{"item", "a.ics", true}, Case{"upper", "A.ICS", true}, Case{"named", "displayname", true},
                          Case{"coloured", "color", true}, Case{"other", "notes.txt", false},
                          Case{"hidden", ".a.ics", false}, Case{"similar", "a.icsx", false}}) {
        TemporaryFolder own;
        own.write("top/" + std::string(c.file), "x");
        fs::create_directories(own / "top/sub");
        const auto found = vdir::findCollections(own.path(), ".ics", [](const auto&, int) {});
        ASSERT_EQ(found.size(), 1U) << c.name;
        EXPECT_EQ(found[0].identifier, c.isCollection ? "top" : "top/sub") << c.name;
        EXPECT_EQ(found[0].sourceTitle, c.isCollection ? "On This Computer" : "top") << c.name;
    }
    folder("bare");
    root.write("text-only/readme.txt", "x");
    EXPECT_THAT(found(), ElementsAre("bare|bare|On This Computer", "text-only|text-only|On This Computer"));
}

TEST_F(CollectionTreeTests, AccountsGiveTheirFoldersAndNothingDeeper) {
    root.write("account/one/a.ics", "x");
    root.write("account/two/deeper/still/b.ics", "x");
    root.write("work/a.ics", "x");
    root.write("work/sub/b.ics", "x");
    EXPECT_THAT(found(),
                ElementsAre("account/one|one|account", "account/two|two|account", "work|work|On This Computer"));
}

TEST_F(CollectionTreeTests, NamesWithADotInFrontArePassedOver) {
    root.write(".hidden/a.ics", "x");
    root.write("account/.hidden/a.ics", "x");
    root.write("account/seen/a.ics", "x");
    root.write("only-hidden/.sub/a.ics", "x");
    EXPECT_THAT(found(), ElementsAre("account/seen|seen|account", "only-hidden|only-hidden|On This Computer"));
}

TEST_F(CollectionTreeTests, TheTitleIsTheDisplayNameLessLineEndsAtItsEnd) {
    for (const auto& [name, bytes] : std::vector<std::pair<std::string, std::string>>{{"a", "Home"},
                                                                                      {"b", "Home\n"},
                                                                                      {"c", "Home\r\n\r\n"},
                                                                                      {"d", " Two\nlines \n"},
                                                                                      {"e", ""},
                                                                                      {"f", "\n"},
                                                                                      {"g", "caf\xE9"},
                                                                                      {"h", "Größe"}})
        root.write(name + "/displayname", bytes);
    std::vector<std::string> titles;
    for (const auto& c : find(root.path())) titles.push_back(c.title);
    EXPECT_THAT(titles, ElementsAre("Home", "Home", "Home", " Two\nlines ", "e", "f", "caf\uFFFD", "Größe"));
}

TEST_F(CollectionTreeTests, ADisplayNameThatIsNoFileLeavesTheFoldersName) {
    folder("folder/displayname");
    root.write("folder/a.ics", "x");
    folder("pipe");
    ASSERT_EQ(::mkfifo((root / "pipe/displayname").c_str(), 0600), 0);
    folder("dangling");
    fs::create_symlink("nowhere", root / "dangling/displayname");
    root.write("huge/displayname", std::string(100'000, 'x'));
    for (const auto& c : find(root.path())) EXPECT_EQ(c.title, c.identifier);
}

TEST_F(CollectionTreeTests, IdentifiersAscendByBytes) {
    for (const std::string name : {"b", "a", "Z", "ä", "a-account/x", "a-account/X", "10", "9"})
        root.write(name + "/color", "");
    std::vector<std::string> identifiers;
    for (const auto& c : find(root.path())) identifiers.push_back(c.identifier);
    EXPECT_THAT(identifiers, ElementsAre("10", "9", "Z", "a", "a-account/X", "a-account/x", "b", "ä"));
}

TEST_F(CollectionTreeTests, NamesThatAreNoUtf8AreRepairedAndStayApart) {
    folder("caf\xE9");
    folder("caf\xE8");
    const auto found = find(root.path());
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].identifier, "caf\uFFFD");
    EXPECT_EQ(found[1].identifier, "caf\uFFFD");
    EXPECT_EQ(found[0].title, "caf\uFFFD");
    EXPECT_EQ(found[0].path, root / "caf\xE8");
    EXPECT_EQ(found[1].path, root / "caf\xE9");
}

TEST_F(CollectionTreeTests, LinksToFoldersAreFollowedAndLoopsEnd) {
    TemporaryFolder elsewhere;
    elsewhere.write("a.ics", "x");
    fs::create_symlink(elsewhere.path(), root / "linked");
    fs::create_symlink("loop-b", root / "loop-a");
    fs::create_symlink("loop-a", root / "loop-b");
    fs::create_symlink("nowhere", root / "dangling");
    folder("self");
    fs::create_symlink(".", root / "self/again");
    EXPECT_THAT(found(), ElementsAre("linked|linked|On This Computer", "self/again|again|self"));
}

TEST_F(CollectionTreeTests, FilesBesideTheCollectionsAreNone) {
    root.write("stray.ics", "x");
    root.write("displayname", "Root");
    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(CollectionTreeTests, AMissingRootHasNoneAndAFileFails) {
    EXPECT_THAT(find(root / "none"), IsEmpty());
    EXPECT_THAT(find(""), IsEmpty());
    root.write("file", "x");
    try {
        find(root / "file");
        FAIL() << "a file was listed";
    } catch (const PosixError& error) {
        EXPECT_EQ(error.code(), ENOTDIR);
    }
}

TEST_F(CollectionTreeTests, PermissionsDecideWhatIsWritableAndWhatIsTold) {
    for (const std::string name : {"open", "read-only", "closed", "no-entry", "account/closed"})
        root.write(name + "/color", "");
    const auto allow = [&](const std::string& name, unsigned mode) { fs::permissions(root / name, fs::perms(mode)); };
    allow("read-only", 0500);
    allow("closed", 0);
    allow("no-entry", 0600);
    allow("account/closed", 0300);
    std::vector<std::string> writable;
    {
        const WithoutPrivileges ordinary;
        for (const auto& c : find(root.path())) writable.push_back(c.identifier + (c.writable ? " yes" : " no"));
    }
    for (const std::string name : {"read-only", "closed", "no-entry", "account/closed"}) allow(name, 0700);
    EXPECT_THAT(writable, ElementsAre("open yes", "read-only no"));
    EXPECT_THAT(unreadable, testing::UnorderedElementsAre("/closed 13", "/no-entry 13", "/account/closed 13"));
}

} // namespace
} // namespace vesk::test
