#pragma once

#include "VeskPlatform/FileManager.hpp"
#include "tests/contracts/FileContracts.hpp"

#include <algorithm>
#include <gmock/gmock.h>
#include <string>
#include <vector>

namespace vesk::test {

/// What every FileManager owes. `World` has `files()`, `folder()`, an empty folder, `put(path, text)`, which also makes
/// its folders, `text(path)`, `link(path, target)`, `date(path, instant)`, and `locked()`, the path of a folder that
/// the user may not read.
template <class World> class FileManagerContract : public ::testing::Test {
protected:
    World world;

    FileManager& files() { return world.files(); }
    std::string at(const std::string& name) { return world.folder() + "/" + name; }
    std::string null(const std::string& name) { return at(name) + std::string("\0x", 2); }
    std::vector<std::string> names(const std::string& path) {
        std::vector<std::string> names;
        const auto reader = files().openDirectory(path);
        while (const auto entry = reader->next()) names.push_back(entry->name + (entry->isDirectory ? "/" : ""));
        return names;
    }
    void expectText(const std::string& path, const std::string& text) { EXPECT_EQ(world.text(path), text) << path; }
};
TYPED_TEST_SUITE_P(FileManagerContract);

TYPED_TEST_P(FileManagerContract, MakesAFolderWithThoseAboveIt) {
    const std::string folder = this->at("a/b c/d");
    this->files().createDirectory(folder);
    this->files().createDirectory(folder);
    EXPECT_TRUE(this->files().attributes(folder)->isDirectory);
    this->world.put(this->at("file"), "x");
    EXPECT_NE(posixCodeOf([&] { this->files().createDirectory(this->at("file")); }), 0);
    EXPECT_NE(posixCodeOf([&] { this->files().createDirectory(this->at("file/inner")); }), 0);
    EXPECT_EQ(posixCodeOf([&] { this->files().createDirectory(this->null("n")); }), EINVAL);
    this->expectText(this->at("file"), "x");
}

TYPED_TEST_P(FileManagerContract, TellsOfAFile) {
    this->world.put(this->at("file"), "12345");
    this->world.date(this->at("file"), Instant(std::chrono::milliseconds(1'700'000'000'123)));
    EXPECT_EQ(this->files().attributes(this->at("file")),
              (FileAttributes{
                  .isDirectory = false, .size = 5, .modified = Instant(std::chrono::milliseconds(1'700'000'000'123))}));
    EXPECT_TRUE(this->files().fileExists(this->at("file")));
}

TYPED_TEST_P(FileManagerContract, TellsOfAFolderWithoutASize) {
    this->files().createDirectory(this->at("folder"));
    const auto attributes = this->files().attributes(this->at("folder"));
    ASSERT_TRUE(attributes);
    EXPECT_TRUE(attributes->isDirectory);
    EXPECT_EQ(attributes->size, std::nullopt);
}

TYPED_TEST_P(FileManagerContract, WhatIsNotThereHasNoAttributes) {
    this->world.put(this->at("file"), "x");
    this->world.link(this->at("broken"), this->at("none"));
    this->world.link(this->at("loop"), this->at("loop"));
    for (const std::string& path : {this->at("none"), this->at("file/inner"), this->at("broken"), this->at("loop"),
                                    this->null("file"), std::string()}) {
        EXPECT_EQ(this->files().attributes(path), std::nullopt) << path;
        EXPECT_FALSE(this->files().fileExists(path)) << path;
    }
}

TYPED_TEST_P(FileManagerContract, ALinkIsFollowed) {
    this->world.put(this->at("folder/file"), "abc");
    this->world.link(this->at("to-file"), this->at("folder/file"));
    this->world.link(this->at("to-folder"), this->at("folder"));
    EXPECT_EQ(this->files().attributes(this->at("to-file"))->size, 3);
    EXPECT_TRUE(this->files().attributes(this->at("to-folder"))->isDirectory);
    EXPECT_TRUE(this->files().fileExists(this->at("to-folder/file")));
    EXPECT_EQ(this->names(this->at("to-folder")), std::vector<std::string>{"file"});
}

TYPED_TEST_P(FileManagerContract, ListsEachNameOnce) {
    this->world.put(this->at("folder/file"), "x");
    this->world.put(this->at("folder/.hidden"), "x");
    this->world.put(this->at("folder/sub/inner"), "x");
    this->world.put(this->at("folder/\xFF\xFE"), "x");
    this->world.link(this->at("folder/link"), this->at("folder/sub"));
    EXPECT_THAT(this->names(this->at("folder")),
                ::testing::UnorderedElementsAre("file", ".hidden", "sub/", "\xFF\xFE", "link"));
    this->files().createDirectory(this->at("empty"));
    EXPECT_THAT(this->names(this->at("empty")), ::testing::IsEmpty());
}

TYPED_TEST_P(FileManagerContract, OnlyAFolderIsListed) {
    this->world.put(this->at("file"), "x");
    EXPECT_EQ(posixCodeOf([&] { this->files().openDirectory(this->at("file")); }), ENOTDIR);
    EXPECT_EQ(posixCodeOf([&] { this->files().openDirectory(this->at("none")); }), ENOENT);
    EXPECT_EQ(posixCodeOf([&] { this->files().openDirectory(this->null("file")); }), EINVAL);
    EXPECT_EQ(posixCodeOf([&] { this->files().openDirectory(this->world.locked()); }), EACCES);
}

TYPED_TEST_P(FileManagerContract, ReadsTheFirstBytes) {
    this->world.put(this->at("file"), "abc");
    EXPECT_EQ(this->files().firstBytes(this->at("file"), 1), "a");
    EXPECT_EQ(this->files().firstBytes(this->at("file"), 10), "abc");
    this->world.put(this->at("empty"), "");
    EXPECT_EQ(this->files().firstBytes(this->at("empty"), 1), "");
    EXPECT_EQ(posixCodeOf([&] { this->files().firstBytes(this->at("none"), 1); }), ENOENT);
    EXPECT_EQ(posixCodeOf([&] { this->files().firstBytes(this->world.folder(), 1); }), EISDIR);
    EXPECT_EQ(posixCodeOf([&] { this->files().firstBytes(this->null("file"), 1); }), EINVAL);
}

TYPED_TEST_P(FileManagerContract, WritesANewFileAndReplacesIt) {
    const std::string bytes("a\0b\r\n\xFF", 6);
    this->files().writeFile(this->at("file"), bytes, ExistingFile::keep);
    this->expectText(this->at("file"), bytes);
    this->files().writeFile(this->at("file"), "", ExistingFile::replace);
    this->expectText(this->at("file"), "");
    this->files().writeFile(this->at("new"), "n", ExistingFile::replace);
    this->expectText(this->at("new"), "n");
    EXPECT_THAT(this->names(this->world.folder()), ::testing::UnorderedElementsAre("file", "new"));
}

TYPED_TEST_P(FileManagerContract, AFileThatIsToBeKeptStays) {
    this->world.put(this->at("file"), "old");
    EXPECT_EQ(posixCodeOf([&] { this->files().writeFile(this->at("file"), "new", ExistingFile::keep); }), EEXIST);
    this->expectText(this->at("file"), "old");
}

TYPED_TEST_P(FileManagerContract, WritingGoesThroughALink) {
    this->world.put(this->at("real/file"), "old");
    this->world.link(this->at("link"), this->at("real/file"));
    EXPECT_EQ(posixCodeOf([&] { this->files().writeFile(this->at("link"), "x", ExistingFile::keep); }), EEXIST);
    this->files().writeFile(this->at("link"), "new", ExistingFile::replace);
    this->expectText(this->at("real/file"), "new");
    this->expectText(this->at("link"), "new");
    EXPECT_THAT(this->names(this->at("real")), ::testing::ElementsAre("file"));
}

TYPED_TEST_P(FileManagerContract, ALinkThatLeadsNowhereIsReplaced) {
    this->world.link(this->at("link"), this->at("none"));
    this->files().writeFile(this->at("link"), "new", ExistingFile::replace);
    this->expectText(this->at("link"), "new");
    EXPECT_FALSE(this->files().fileExists(this->at("none")));
}

TYPED_TEST_P(FileManagerContract, WhatCannotBeWrittenHasItsCode) {
    this->files().createDirectory(this->at("folder"));
    this->world.put(this->at("file"), "x");
    const auto codeOf = [&](const std::string& path) {
        return posixCodeOf([&] { this->files().writeFile(path, "x", ExistingFile::replace); });
    };
    EXPECT_EQ(codeOf(this->at("folder")), EISDIR);
    EXPECT_EQ(codeOf(this->at("none/file")), ENOENT);
    EXPECT_EQ(codeOf(this->at("file/inner")), ENOTDIR);
    EXPECT_EQ(codeOf(this->null("file")), EINVAL);
    EXPECT_THAT(this->names(this->world.folder()), ::testing::UnorderedElementsAre("folder/", "file"));
}

TYPED_TEST_P(FileManagerContract, CopiesAFile) {
    this->world.put(this->at("file"), "abc");
    this->files().copyItem(this->at("file"), this->at("copy"));
    this->expectText(this->at("copy"), "abc");
    this->expectText(this->at("file"), "abc");
}

TYPED_TEST_P(FileManagerContract, CopiesAFolderWithEverythingInIt) {
    this->world.put(this->at("folder/a"), "1");
    this->world.put(this->at("folder/sub/.b"), "2");
    this->files().createDirectory(this->at("folder/empty"));
    this->world.link(this->at("folder/link"), "a");
    this->files().copyItem(this->at("folder"), this->at("copy"));
    this->expectText(this->at("copy/a"), "1");
    this->expectText(this->at("copy/sub/.b"), "2");
    EXPECT_THAT(this->names(this->at("copy")), ::testing::UnorderedElementsAre("a", "sub/", "empty/", "link"));
}

TYPED_TEST_P(FileManagerContract, ALinkIsCopiedAsALink) {
    this->world.put(this->at("folder/file"), "x");
    this->world.link(this->at("link"), this->at("folder"));
    this->files().copyItem(this->at("link"), this->at("copy"));
    EXPECT_THAT(this->names(this->world.folder()), ::testing::UnorderedElementsAre("folder/", "link", "copy"));
    EXPECT_TRUE(this->files().fileExists(this->at("copy/file")));
}

TYPED_TEST_P(FileManagerContract, WhatCannotBeCopiedHasItsCode) {
    this->world.put(this->at("folder/file"), "x");
    this->world.put(this->at("other"), "y");
    const auto codeOf = [&](const std::string& from, const std::string& to) {
        return posixCodeOf([&] { this->files().copyItem(from, to); });
    };
    EXPECT_EQ(codeOf(this->at("none"), this->at("copy")), ENOENT);
    EXPECT_EQ(codeOf(this->at("folder"), this->at("other")), EEXIST);
    EXPECT_EQ(codeOf(this->at("folder/file"), this->at("folder")), EEXIST);
    EXPECT_EQ(codeOf(this->at("folder"), this->at("folder/inside")), EINVAL);
    this->expectText(this->at("other"), "y");
    EXPECT_THAT(this->names(this->at("folder")), ::testing::ElementsAre("file"));
}

TYPED_TEST_P(FileManagerContract, RemovesAFileALinkOrAWholeFolder) {
    this->world.put(this->at("file"), "x");
    this->world.put(this->at("folder/sub/inner"), "x");
    this->world.link(this->at("link"), this->at("folder"));
    this->files().removeItem(this->at("link"));
    this->files().removeItem(this->at("file"));
    EXPECT_EQ(this->names(this->world.folder()), std::vector<std::string>{"folder/"});
    this->files().removeItem(this->at("folder"));
    EXPECT_FALSE(this->files().fileExists(this->at("folder")));
    EXPECT_EQ(posixCodeOf([&] { this->files().removeItem(this->at("folder")); }), ENOENT);
    this->world.put(this->at("a"), "x");
    EXPECT_EQ(posixCodeOf([&] { this->files().removeItem(this->null("a")); }), EINVAL);
}

TYPED_TEST_P(FileManagerContract, TellsWhetherRemovingTheOneLosesTheOther) {
    this->world.put(this->at("a/b/file"), "x");
    this->world.put(this->at("ab"), "x");
    this->world.link(this->at("link"), this->at("a/b/file"));
    const auto contains = [&](const std::string& folder, const std::string& item) {
        return this->files().isOrContains(this->at(folder), this->at(item));
    };
    EXPECT_TRUE(contains("a", "a/b/file"));
    EXPECT_TRUE(contains("a/b/file", "a/b/file"));
    EXPECT_TRUE(contains("a", "link")) << "what a link leads to";
    EXPECT_TRUE(this->files().isOrContains(this->world.folder(), this->at("link")));
    EXPECT_TRUE(this->files().isOrContains("/", this->at("ab")));
    EXPECT_FALSE(contains("a", "ab"));
    EXPECT_FALSE(contains("a/b", "a"));
    EXPECT_FALSE(contains("link", "a/b/file")) << "removing a link loses nothing else";
    EXPECT_TRUE(contains("link", "link"));
    EXPECT_FALSE(contains("none", "ab"));
    EXPECT_FALSE(contains("a", "a/none"));
}

REGISTER_TYPED_TEST_SUITE_P(FileManagerContract, MakesAFolderWithThoseAboveIt, TellsOfAFile, TellsOfAFolderWithoutASize,
                            WhatIsNotThereHasNoAttributes, ALinkIsFollowed, ListsEachNameOnce, OnlyAFolderIsListed,
                            ReadsTheFirstBytes, WritesANewFileAndReplacesIt, AFileThatIsToBeKeptStays,
                            WritingGoesThroughALink, ALinkThatLeadsNowhereIsReplaced, WhatCannotBeWrittenHasItsCode,
                            CopiesAFile, CopiesAFolderWithEverythingInIt, ALinkIsCopiedAsALink,
                            WhatCannotBeCopiedHasItsCode, RemovesAFileALinkOrAWholeFolder,
                            TellsWhetherRemovingTheOneLosesTheOther);

} // namespace vesk::test
