#include "VeskShellCore/FileAccessSupport.hpp"

#include "tests/VeskShellCore/GoldenRecords.hpp"
#include "tests/fakes/FakePlatform.hpp"

#include <gmock/gmock.h>

namespace vesk::test {
namespace {

class FileAccess : public ::testing::Test {
protected:
    FakePlatform platform;
    FakeFileManager& files = platform.fakeFileManager;

    CapabilityFileAccessResponse prepared(const std::string& path, const std::string& home = "/home/dana") {
        return VeskFileAccessSupport::prepare(platform, path, platform.bundle, home);
    }
    void expectNoProbe(const std::string& path, const std::string& status, const std::string& requested,
                       const std::string& detail) {
        SCOPED_TRACE(path);
        const auto response = prepared(path);
        EXPECT_EQ(response.status, status);
        EXPECT_EQ(response.requestedPath, requested);
        EXPECT_EQ(response.probedPath, std::nullopt);
        EXPECT_EQ(response.detail, detail);
        EXPECT_TRUE(files.calls.empty());
    }
    void expectProbe(const std::string& path, const std::string& status, const std::string& probed,
                     const std::string& detail) {
        SCOPED_TRACE(path);
        const auto response = prepared(path);
        EXPECT_EQ(response.status, status);
        EXPECT_EQ(response.requestedPath, path);
        EXPECT_EQ(response.probedPath, probed);
        EXPECT_EQ(response.detail, detail);
    }
    void expectReady(const std::string& path, const std::string& probed) {
        expectProbe(path, "ready", probed, "Vesk.app can access the requested local path.");
    }
    void expectMissing(const std::string& path, const std::string& probed) {
        expectProbe(path, "error", probed,
                    "Vesk.app could not prepare the requested local path: The file doesn’t exist.");
    }
};

TEST_F(FileAccess, ABlankPathIsInvalid) {
    for (const char* path : {"", " \t\n", "\xC2\xA0"})
        expectNoProbe(path, "invalid", "", "Vesk.app needs a local path before it can prepare file access.");
}

TEST_F(FileAccess, ARelativePathIsInvalid) {
    const std::string detail = "Vesk.app needs an absolute local path or a path beginning with ~.";
    expectNoProbe(" notes/a.txt ", "invalid", "notes/a.txt", detail);
    expectNoProbe("./a", "invalid", "./a", detail);
    expectNoProbe("~nobody/a", "invalid", "~nobody/a", detail);
    platform.fakeEnvironment.home = "";
    expectNoProbe("~", "invalid", "~", detail);
}

TEST_F(FileAccess, TheRootAndTheHomeNeedBroadAccess) {
    const std::string detail =
        "A whole-computer file request may need Full Disk Access instead of a folder-specific prompt.";
    for (const char* path : {"/", "//", "/..", "/home/.."}) expectNoProbe(path, "broad_access_required", "/", detail);
    for (const char* path : {"~", "~/", " ~\n", "/home/dana", "/home/dana/.", "/home//dana/", "/home/dana/x/.."})
        expectNoProbe(path, "broad_access_required", "/home/dana", detail);
}

TEST_F(FileAccess, TheHomeThatIsGivenIsExpandedToo) {
    EXPECT_EQ(prepared("/home/dana", "~").status, "broad_access_required");
    EXPECT_EQ(prepared("/srv/other", "/srv//other/").status, "broad_access_required");
}

TEST_F(FileAccess, AFileDeepInAGuardedFolderIsProbedAtThatFolder) {
    for (const char* folder : {"/home/dana/Desktop", "/home/dana/Documents", "/home/dana/Downloads", "/drive"})
        files.folders.insert(folder);
    files.put("/home/dana/Documents/a/b.txt", "x");
    expectReady("/home/dana/Documents/a/b.txt", "/home/dana/Documents");
    expectReady("/home/dana/Documents/none/at/all", "/home/dana/Documents");
    expectReady("/home/dana/Documents", "/home/dana/Documents");
    expectReady("/home/dana/Desktop/x", "/home/dana/Desktop");
    expectReady("/home/dana/Downloads/x", "/home/dana/Downloads");
    expectReady("/drive/x", "/drive");
    EXPECT_EQ(prepared("~/Documents/a").probedPath, "/home/dana/Documents");
    EXPECT_THAT(files.calls, ::testing::Each(::testing::StartsWith("openDirectory ")));
}

TEST_F(FileAccess, AGuardedFolderThatIsMissingIsAnError) {
    files.folders.insert("/home/dana");
    expectMissing("/home/dana/Documents/a.txt", "/home/dana/Documents");
}

TEST_F(FileAccess, ASiblingWhoseNameMerelyBeginsThatWayIsWalkedUpwards) {
    files.folders.insert("/home/dana/Documents-old");
    expectReady("/home/dana/Documents-old/a/b", "/home/dana/Documents-old");
    expectReady("/home/dana/DocumentsX", "/home/dana");
}

TEST_F(FileAccess, AMissingPathIsProbedAtItsDeepestAncestor) {
    files.folders.insert("/srv/data");
    expectReady("/srv/data/none/at/all", "/srv/data");
    expectReady("/srv/data", "/srv/data");
}

TEST_F(FileAccess, AMissingPathWithNoAncestorIsAnError) {
    expectMissing("/none/at/all", "/none/at");
    EXPECT_EQ(prepared("/none").status, "ready") << "its parent is the root, which is there";
    EXPECT_EQ(prepared("/none").probedPath, "/");
}

TEST_F(FileAccess, AFileIsProbedAtItsParent) {
    files.put("/srv/a.txt", "x");
    expectReady("/srv/a.txt", "/srv");
    expectReady("/srv/a.txt/below", "/srv");
}

TEST_F(FileAccess, AGuardedFileIsReadByItsFirstByte) {
    files.put("/drive", "a file in the folder's place");
    expectReady("/drive", "/drive");
    EXPECT_EQ(files.calls, std::vector<std::string>{"firstBytes /drive"});
}

TEST_F(FileAccess, ADenialIsTold) {
    files.folders.insert("/srv/data");
    for (const int code : {EACCES, EPERM}) {
        files.failing["/srv/data"] = code;
        expectProbe("/srv/data/a", "denied", "/srv/data",
                    "macOS did not grant Vesk access to the requested local path.");
    }
}

TEST_F(FileAccess, AnotherFailureIsTold) {
    files.folders.insert("/srv/data");
    files.failing["/srv/data"] = EIO;
    expectProbe("/srv/data/a", "error", "/srv/data",
                "Vesk.app could not prepare the requested local path: /srv/data: Input/output error");
}

TEST_F(FileAccess, TheBrokerIsNamedAfterTheBundle) {
    EXPECT_EQ(prepared("").brokerPath, "Vesk.app");
    EXPECT_EQ(prepared("").bundlePath, "/Applications/Vesk.app");
    platform.bundle.path = "/opt/bin";
    EXPECT_EQ(prepared("").brokerPath, "bin");
    EXPECT_EQ(prepared("").bundlePath, std::nullopt);
    platform.bundle.path = "";
    EXPECT_EQ(prepared("").brokerPath, "Vesk.app");
}

TEST(FileAccessModels, AResponse) {
    const std::string whole = R"({
  "brokerPath" : "b",
  "bundlePath" : "\/A\/Vesk.app",
  "detail" : "D",
  "probedPath" : "\/p",
  "requestedPath" : "\/p\/r",
  "status" : "ready"
})";
    EXPECT_EQ(expectGolden<CapabilityFileAccessResponse>(whole).probedPath, "/p");
    expectRequired<CapabilityFileAccessResponse>(whole, {"brokerPath", "detail", "requestedPath", "status"});
}

} // namespace
} // namespace vesk::test
