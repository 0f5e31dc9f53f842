#include "VeskPlatform/Linux/Desktop/DesktopFiles.hpp"

#include "tests/fakes/FakeBasics.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

namespace vesk::test {
namespace {

class DesktopFilesTests : public ::testing::Test {
protected:
    DesktopFilesTests() {
        environment.variables["XDG_DATA_HOME"] = folder / "own";
        environment.variables["XDG_DATA_DIRS"] = folder / "near/:relative::" + folder.path() + "/far";
    }
    std::string add(const std::string& place, const std::string& keys) {
        return folder.write(place, "[Desktop Entry]\n" + keys);
    }
    static std::string found(const std::optional<DesktopFile>& file) { return file ? file->identifier : "-"; }
    std::string ofWindow(const WindowIdentity& window) { return found(DesktopFiles(environment).ofWindow(window)); }

    TemporaryFolder folder;
    FakeEnvironment environment;
};

TEST_F(DesktopFilesTests, AnIdentifierIsThePathBelowTheFolder) {
    environment.variables["LANG"] = "de_DE.UTF-8";
    const std::string path = add("near/applications/kde/sub/editor.desktop", "Name=Editor\nName[de]=Bearbeiter\n");
    const auto file = DesktopFiles(environment).withIdentifier("kde-sub-editor");
    ASSERT_TRUE(file);
    EXPECT_EQ(file->identifier, "kde-sub-editor");
    EXPECT_EQ(file->path, path);
    EXPECT_EQ(file->name, "Bearbeiter");
    EXPECT_FALSE(DesktopFiles(environment).withIdentifier("editor"));
}

TEST_F(DesktopFilesTests, EarlierFoldersHideLaterOnes) {
    add("far/applications/editor.desktop", "Name=Far\n");
    EXPECT_EQ(DesktopFiles(environment).withIdentifier("editor")->name, "Far");
    add("near/applications/editor.desktop", "Name=Near\n");
    EXPECT_EQ(DesktopFiles(environment).withIdentifier("editor")->name, "Near");
    add("own/applications/editor.desktop", "Name=Own\n");
    EXPECT_EQ(DesktopFiles(environment).withIdentifier("editor")->name, "Own");
    add("own/applications/editor.desktop", "Name=Own\nHidden=true\n");
    EXPECT_FALSE(DesktopFiles(environment).withIdentifier("editor"));
    EXPECT_EQ(ofWindow({.className = "editor"}), "-");
}

TEST_F(DesktopFilesTests, WithoutVariablesTheStandardFoldersCount) {
    environment.variables.clear();
    environment.home = folder / "home";
    add("home/.local/share/applications/editor.desktop", "Name=Editor\n");
    EXPECT_TRUE(DesktopFiles(environment).withIdentifier("editor"));
    environment.variables["XDG_DATA_HOME"] = "relative";
    EXPECT_TRUE(DesktopFiles(environment).withIdentifier("editor")) << "a relative path is ignored";
}

TEST_F(DesktopFilesTests, FilesThatAreNoneAreLeftOut) {
    folder.write("own/applications/editor.txt", "[Desktop Entry]\nName=Text\n");
    folder.write("own/applications/empty.desktop", "");
    folder.write("own/applications/.hidden/x.desktop", "[Desktop Entry]\nName=X\n");
    std::filesystem::create_symlink(folder / "own/applications", folder / "own/applications/loop");
    std::filesystem::create_symlink(folder / "nowhere", folder / "own/applications/broken.desktop");
    std::filesystem::create_directories(folder / "own/applications/folder.desktop");
    DesktopFiles files(environment);
    for (const std::string identifier : {"editor", "empty", ".hidden-x", "broken", "folder"})
        EXPECT_FALSE(files.withIdentifier(identifier)) << identifier;
}

TEST_F(DesktopFilesTests, AWindowsFileIsFoundByWhatItTellsInOrder) {
    add("own/applications/org.told.desktop", "Name=Told\n");
    add("own/applications/claims.desktop", "Name=Claims\nStartupWMClass=Thing\n");
    add("own/applications/Thing.desktop", "Name=Named\n");
    add("own/applications/web.desktop", "Name=Web\nStartupWMClass=crx_abc\n");
    add("own/applications/browser.desktop", "Name=Browser\nStartupWMClass=Browser\n");
    add("own/applications/lower.desktop", "Name=Lower\n");
    add("own/applications/Exact.desktop", "Name=Exact\n");
    add("own/applications/exact.desktop", "Name=Inexact\n");
    EXPECT_EQ(ofWindow({"org.told", "Thing", "thing"}), "org.told");
    EXPECT_EQ(ofWindow({"org.untold", "Thing", "thing"}), "claims");
    EXPECT_EQ(ofWindow({"", "Browser", "browser"}), "browser");
    EXPECT_EQ(ofWindow({"", "Browser", "crx_abc"}), "web");
    EXPECT_EQ(ofWindow({"Thing", "", ""}), "Thing");
    EXPECT_EQ(ofWindow({"", "Lower", ""}), "lower");
    EXPECT_EQ(ofWindow({"", "Unknown", "lower"}), "lower");
    EXPECT_EQ(ofWindow({"", "Exact", ""}), "Exact");
    EXPECT_EQ(ofWindow({"", "exact", ""}), "exact");
    EXPECT_EQ(ofWindow({"", "", ""}), "-");
    EXPECT_EQ(ofWindow({"", "Unknown", "unknown"}), "-");
}

TEST_F(DesktopFilesTests, AFileThatMenusShowClaimsAClassBeforeAHelper) {
    add("own/applications/a-helper.desktop", "Name=Helper\nStartupWMClass=Code\nNoDisplay=true\n");
    add("own/applications/code.desktop", "Name=Code\nStartupWMClass=Code\n");
    add("own/applications/b-deleted.desktop", "Name=Deleted\nStartupWMClass=Gone\nHidden=true\n");
    add("own/applications/only-helper.desktop", "Name=Only\nStartupWMClass=Lonely\nNoDisplay=true\n");
    EXPECT_EQ(ofWindow({"", "Code", ""}), "code");
    EXPECT_EQ(ofWindow({"", "Gone", ""}), "-");
    EXPECT_EQ(ofWindow({"", "Lonely", ""}), "only-helper");
}

TEST_F(DesktopFilesTests, ANameIsThatOfTheUsersLanguageOrTheFilesOwn) {
    environment.variables["LANG"] = "de_DE.UTF-8";
    add("own/applications/a.desktop", "Name=text editor\nName[de]=Bearbeiter\n");
    add("own/applications/b.desktop", "Name=Text Editor\n");
    add("own/applications/c.desktop", "Name=Gone\nHidden=true\n");
    DesktopFiles files(environment);
    EXPECT_EQ(found(files.withName("Bearbeiter")), "a");
    EXPECT_EQ(found(files.withName("Text Editor")), "b");
    EXPECT_EQ(found(files.withName("TEXT EDITOR")), "a");
    EXPECT_EQ(found(files.withName("Gone")), "-");
    EXPECT_EQ(files.withName("text editor")->name, "Bearbeiter");
}

} // namespace
} // namespace vesk::test
