#include "VeskShellCore/ICloudOperations.hpp"

#include "tests/VeskShellCore/CloudWorld.hpp"

namespace vesk::test {
namespace {

using namespace VeskICloudOperations;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using enum CapabilityICloudScope;

struct ICloudOperations : CloudWorld {
    auto listed(const std::optional<std::string>& path) { return list(platform, path, drive, platform.bundle); }
    auto told(const std::optional<std::string>& path) { return stat(platform, path, drive, platform.bundle); }
    auto read(const std::string& path) { return readText(platform, path, drive, platform.bundle); }
    auto written(const std::string& path, const std::string& text, bool overwrite = false) {
        return writeText(platform, path, text, overwrite, drive, platform.bundle);
    }
    auto made(const std::string& path) { return makeDirectory(platform, path, drive, platform.bundle); }
    auto exported(const std::string& path, const std::string& output) {
        return exportItem(platform, path, output, drive, platform.bundle);
    }

    template <class Response> void expectOpening(const Response& response) {
        EXPECT_EQ(response.brokerPath, "Vesk.app");
        EXPECT_EQ(response.bundlePath, "/Applications/Vesk.app");
        EXPECT_EQ(response.scope, drive);
        EXPECT_EQ(response.rootPath, "/drive");
        EXPECT_EQ(response.containerIdentifier, "com.apple.CloudDocs");
    }
    /// The PosixError of a call, with its code; none fails the test.
    template <class Call> static PosixError posixError(Call call) {
        try {
            call();
        } catch (const PosixError& error) {
            return error;
        }
        ADD_FAILURE() << "no error of the system";
        return {0, ""};
    }
};

TEST_F(ICloudOperations, TheRootIsTold) {
    const auto response = rootResponse(platform, drive, platform.bundle);
    expectOpening(response);
    EXPECT_EQ(response.containerPath, "/drive");
    EXPECT_EQ(response.documentsPath, "/drive");
    EXPECT_EQ(response.detail, "Vesk.app is using the user's iCloud Drive root.");
    const auto documents = rootResponse(platform, appDocuments, platform.bundle);
    EXPECT_EQ(documents.scope, appDocuments);
    EXPECT_EQ(documents.containerPath, "/containers/c");
    EXPECT_EQ(documents.documentsPath, "/containers/c/Documents");
    EXPECT_EQ(documents.detail, "Vesk.app is using its iCloud Drive documents container.");
}

TEST_F(ICloudOperations, EachChecksTheCloudAndThePathFirst) {
    const std::vector<std::function<void(const std::string&)>> all{
        [&](const auto& path) { listed(path); }, [&](const auto& path) { told(path); },
        [&](const auto& path) { read(path); },   [&](const auto& path) { written(path, "x"); },
        [&](const auto& path) { made(path); },   [&](const auto& path) { exported(path, "/out/x"); },
    };
    for (const auto& call : all) {
        expectCloudFailure(400, "iCloud paths must be relative to the selected iCloud root.", [&] { call("/etc"); });
        expectCloudFailure(400, "iCloud paths cannot traverse outside the selected iCloud root.",
                           [&] { call("a/../../etc"); });
        info = {};
        expectCloudFailure(400, "This Vesk build is not configured for iCloud Drive access.", [&] { call("/etc"); });
        info = {{"VeskICloudContainerIdentifier", {std::string("c")}}};
    }
    EXPECT_TRUE(files.calls.empty());
}

TEST_F(ICloudOperations, AListOfTheRootHasNoBase) {
    put("/drive/b", "x");
    put("/drive/A", "x");
    put("/drive/sub/inner", "x");
    put("/drive/.hidden", "x");
    const auto response = listed(std::nullopt);
    expectOpening(response);
    EXPECT_EQ(response.baseRelativePath, std::nullopt);
    EXPECT_EQ(response.documentsPath, "/drive");
    EXPECT_EQ(response.detail, "Listed up to 200 items from iCloud contents.");
    ASSERT_EQ(response.entries.size(), 3U);
    EXPECT_EQ(response.entries[0].name, "sub");
    EXPECT_TRUE(response.entries[0].isDirectory);
    EXPECT_EQ(response.entries[1].name, "A");
    EXPECT_EQ(response.entries[2].name, "b");
    EXPECT_EQ(listed("./").entries, response.entries);
}

TEST_F(ICloudOperations, AListOfAFolderHasItsNormalisedPath) {
    put("/drive/a b/sub/inner", "x");
    const auto response = listed(" a b //./sub/");
    EXPECT_EQ(response.baseRelativePath, "a b/sub");
    EXPECT_EQ(response.entries.front().relativePath, "a b/sub/inner");
}

TEST_F(ICloudOperations, AListEndsAtTwoHundredAndIsSortedThen) {
    for (int i = 0; i < 250; ++i) put("/drive/" + std::to_string(1000 + i), "x");
    files.folders.insert("/drive/zzz");
    const auto response = listed(std::nullopt);
    EXPECT_EQ(response.entries.size(), 200U);
    EXPECT_EQ(response.entries.front().name, "1000") << "the folder is not among the first";
    EXPECT_EQ(files.given, 200U);
}

TEST_F(ICloudOperations, OnlyAFolderIsListed) {
    put("/drive/file", "x");
    expectCloudFailure(404, "The requested iCloud path does not exist.", [&] { listed("none"); });
    expectCloudFailure(404, "The requested iCloud directory does not exist.", [&] { listed("file"); });
    files.folders.insert("/drive/locked");
    files.refused = {"/drive/locked"};
    expectCloudFailure(EACCES, "Unable to open the requested iCloud directory.", [&] { listed("locked"); });
}

TEST_F(ICloudOperations, AStatTellsOfAFile) {
    put("/drive/.hidden", "12345");
    files.modified["/drive/.hidden"] = Instant(std::chrono::milliseconds(1'700'000'000'123));
    const auto response = told(".hidden");
    expectOpening(response);
    EXPECT_EQ(response.relativePath, ".hidden");
    EXPECT_EQ(response.path, "/drive/.hidden");
    EXPECT_TRUE(response.exists);
    EXPECT_FALSE(response.isDirectory);
    EXPECT_EQ(response.sizeBytes, 5);
    EXPECT_EQ(response.modifiedAtMs, 1'700'000'000'123);
    EXPECT_EQ(response.detail, "Resolved iCloud path.");
}

TEST_F(ICloudOperations, AStatOfWhatHasNoDateHasNone) {
    put("/drive/file", "12345");
    files.modified["/drive/file"] = std::nullopt;
    EXPECT_TRUE(told("file").exists);
    EXPECT_EQ(told("file").modifiedAtMs, std::nullopt);
}

TEST_F(ICloudOperations, AStatOfTheRootHasNoPathAndNoSize) {
    for (const std::optional<std::string>& path : {std::optional<std::string>(), std::optional<std::string>(".")}) {
        const auto response = told(path);
        EXPECT_EQ(response.relativePath, std::nullopt);
        EXPECT_EQ(response.path, "/drive");
        EXPECT_TRUE(response.isDirectory);
        EXPECT_EQ(response.sizeBytes, std::nullopt);
        EXPECT_TRUE(response.modifiedAtMs);
    }
}

TEST_F(ICloudOperations, AStatOfAMissingPathIsNoFailure) {
    const auto response = told("none/at/all");
    EXPECT_FALSE(response.exists);
    EXPECT_FALSE(response.isDirectory);
    EXPECT_EQ(response.relativePath, "none/at/all");
    EXPECT_EQ(response.path, "/drive/none/at/all");
    EXPECT_EQ(response.sizeBytes, std::nullopt);
    EXPECT_EQ(response.modifiedAtMs, std::nullopt);
    EXPECT_EQ(response.detail, "The requested iCloud path does not exist yet.");
}

TEST_F(ICloudOperations, ReadsAText) {
    put("/drive/a/.hidden", "gr\u00fcn\n");
    const auto response = read("a/.hidden");
    expectOpening(response);
    EXPECT_EQ(response.relativePath, "a/.hidden");
    EXPECT_EQ(response.path, "/drive/a/.hidden");
    EXPECT_EQ(response.text, "gr\u00fcn\n");
    EXPECT_EQ(response.sizeBytes, 6);
    EXPECT_EQ(response.detail, "Read text from iCloud.");
}

TEST_F(ICloudOperations, ReadsThroughALinkBelowTheRoot) {
    put("/elsewhere/file", "linked");
    files.links["/drive/link"] = "/elsewhere/file";
    platform.fakeFileReader.files["/drive/link"] = "linked";
    EXPECT_EQ(read("link").text, "linked");
    EXPECT_EQ(told("link").sizeBytes, 6);
}

TEST_F(ICloudOperations, OnlyAFileOfTextIsRead) {
    files.folders.insert("/drive/folder");
    expectCloudFailure(404, "The requested iCloud path does not exist.", [&] { read("none"); });
    for (const char* path : {"", ".", "folder"})
        expectCloudFailure(404, "The requested iCloud file does not exist or is a directory.", [&] { read(path); });
    put("/drive/latin", "gr\xFCn");
    try {
        read("latin");
        FAIL() << "no failure";
    } catch (const ErrorRecord& error) {
        EXPECT_EQ(error.domain(), "NSCocoaErrorDomain");
        EXPECT_EQ(error.code(), 261);
        EXPECT_EQ(error.description(), "/drive/latin: The text is not UTF-8.");
    }
}

TEST_F(ICloudOperations, WritesANewTextWithItsFolders) {
    const auto response = written(" a / b/new.txt", "gr\u00fcn");
    expectOpening(response);
    EXPECT_EQ(response.relativePath, "a/b/new.txt");
    EXPECT_EQ(response.path, "/drive/a/b/new.txt");
    EXPECT_EQ(response.sizeBytes, 5);
    EXPECT_EQ(response.detail, "Wrote text into iCloud.");
    EXPECT_EQ(files.texts["/drive/a/b/new.txt"], "gr\u00fcn");
    EXPECT_EQ(files.made, std::vector<std::string>{"/drive/a/b"});
}

TEST_F(ICloudOperations, AFileIsReplacedOnlyWhenAsked) {
    put("/drive/file", "old");
    expectCloudFailure(409, "The requested iCloud file already exists.", [&] { written("file", "new"); });
    EXPECT_EQ(files.texts["/drive/file"], "old");
    written("file", "new", true);
    EXPECT_EQ(files.texts["/drive/file"], "new");
}

TEST_F(ICloudOperations, AFolderIsNeverWrittenOver) {
    files.folders.insert("/drive/folder");
    for (const char* path : {"", ".", "folder"})
        for (const bool overwrite : {false, true})
            expectCloudFailure(400, "Cannot overwrite an iCloud directory with text content.",
                               [&] { written(path, "x", overwrite); });
    EXPECT_TRUE(files.calls.empty());
}

TEST_F(ICloudOperations, WhatAppearsBetweenTheLookAndTheWriteIsKept) {
    files.failing["/drive/file"] = EEXIST;
    expectCloudFailure(409, "The requested iCloud file already exists.", [&] { written("file", "x"); });
    files.failing["/drive/file"] = EISDIR;
    expectCloudFailure(400, "Cannot overwrite an iCloud directory with text content.",
                       [&] { written("file", "x", true); });
}

TEST_F(ICloudOperations, AFailedWritePassesThroughAndKeepsTheFile) {
    put("/drive/file", "old");
    files.failing["/drive/file"] = ENOSPC;
    EXPECT_EQ(posixError([&] { written("file", "new", true); }).code(), ENOSPC);
    EXPECT_EQ(files.texts["/drive/file"], "old");
    files.failing.clear();
    EXPECT_EQ(posixError([&] { written("file/below", "x"); }).code(), EEXIST);
}

TEST_F(ICloudOperations, ATextThatIsNoUtf8IsNotWritten) {
    try {
        written("file", "\xFF");
        FAIL() << "no failure";
    } catch (const ErrorRecord& error) {
        EXPECT_EQ(error.domain(), "NSCocoaErrorDomain");
        EXPECT_EQ(error.code(), 517);
    }
    EXPECT_TRUE(files.calls.empty());
}

TEST_F(ICloudOperations, MakesAFolder) {
    const auto response = made("a//b");
    expectOpening(response);
    EXPECT_EQ(response.relativePath, "a/b");
    EXPECT_EQ(response.path, "/drive/a/b");
    EXPECT_EQ(response.detail, "Created iCloud directory.");
    EXPECT_EQ(made("a/b").path, "/drive/a/b") << "one that is there is no failure";
    EXPECT_EQ(made("").relativePath, "");
    put("/drive/file", "x");
    EXPECT_EQ(posixError([&] { made("file"); }).code(), EEXIST);
}

TEST_F(ICloudOperations, ExportsAFile) {
    put("/drive/a/file", "12345");
    const auto response = exported("a/file", "/out/./sub//copy");
    expectOpening(response);
    EXPECT_EQ(response.relativePath, "a/file");
    EXPECT_EQ(response.sourcePath, "/drive/a/file");
    EXPECT_EQ(response.exportedPath, "/out/sub/copy");
    EXPECT_FALSE(response.isDirectory);
    EXPECT_EQ(response.sizeBytes, 5);
    EXPECT_EQ(response.itemCount, std::nullopt);
    EXPECT_EQ(response.detail, "Exported iCloud file to a local path.");
    EXPECT_EQ(files.texts["/out/sub/copy"], "12345");
    EXPECT_EQ(files.made, std::vector<std::string>{"/out/sub"});
}

TEST_F(ICloudOperations, ExportsAFolderAndCountsWhatIsNotHidden) {
    put("/drive/folder/seen", "x");
    put("/drive/folder/.hidden", "x");
    const auto response = exported("folder", "/out");
    EXPECT_TRUE(response.isDirectory);
    EXPECT_EQ(response.itemCount, 1);
    EXPECT_EQ(response.sizeBytes, std::nullopt);
    EXPECT_EQ(response.detail, "Exported iCloud directory to a local path.");
    EXPECT_TRUE(files.texts.contains("/out/.hidden"));
}

TEST_F(ICloudOperations, ExportsTheRoot) {
    put("/drive/a", "x");
    const auto response = exported("", "/out");
    EXPECT_EQ(response.relativePath, "");
    EXPECT_EQ(response.itemCount, 1);
}

TEST_F(ICloudOperations, ARootThatIsALinkIsExportedAsWhatItLeadsTo) {
    put("/drive/a/b", "x");
    put("/home/dana/other", "x");
    files.links["/home/dana/Cloud"] = "/drive";
    platform.fakeCloudAccount.drive = "/home/dana/Cloud";
    const auto response = exported("", "/out");
    EXPECT_EQ(response.sourcePath, "/home/dana/Cloud");
    EXPECT_EQ(response.itemCount, 2);
    EXPECT_FALSE(files.links.contains("/out"));
    EXPECT_TRUE(files.texts.contains("/out/a/b"));
    for (const char* output : {"/home/dana/Cloud", "/home/dana", "/drive", "/drive/a/new", "/home/dana/Cloud/a/new"})
        EXPECT_EQ(posixError([&] { exported("", output); }).code(), EINVAL) << output;
    EXPECT_TRUE(files.texts.contains("/drive/a/b"));
    EXPECT_TRUE(files.links.contains("/home/dana/Cloud"));
}

TEST_F(ICloudOperations, AnOutputIsRelativeToTheCurrentFolder) {
    put("/drive/file", "x");
    EXPECT_EQ(exported("file", "sub/../copy").exportedPath, "/home/dana/work/copy");
}

TEST_F(ICloudOperations, AnExportReplacesWhatIsThereOfEitherKind) {
    put("/drive/file", "new");
    put("/drive/folder/inner", "new");
    put("/out/file", "old");
    exported("file", "/out/file");
    EXPECT_EQ(files.texts["/out/file"], "new");
    exported("folder", "/out/file");
    EXPECT_EQ(files.texts["/out/file/inner"], "new");
    exported("file", "/out/file");
    EXPECT_EQ(files.texts["/out/file"], "new");
    EXPECT_FALSE(files.texts.contains("/out/file/inner"));
    files.links["/out/link"] = "/nowhere";
    exported("file", "/out/link");
    EXPECT_EQ(files.texts["/out/link"], "new");
}

TEST_F(ICloudOperations, WhatIsNotThereIsNotExported) {
    put("/out", "old");
    expectCloudFailure(404, "The requested iCloud path does not exist.", [&] { exported("none", "/out"); });
    EXPECT_EQ(files.texts["/out"], "old");
}

TEST_F(ICloudOperations, WhatGoesMeanwhileIsNotExported) {
    struct Vanishing : FakeFileManager {
        std::optional<FileAttributes> attributes(const std::string& path) override {
            auto found = FakeFileManager::attributes(path);
            if (path == "/drive/file") texts.erase(path);
            return found;
        }
    };
    struct VanishingPlatform : FakePlatform {
        FileManager& fileManager() override { return vanishing; }
        Vanishing vanishing;
    };
    VanishingPlatform vanishing;
    vanishing.fakeBundleInformation = platform.fakeBundleInformation;
    vanishing.fakeCloudAccount = platform.fakeCloudAccount;
    vanishing.vanishing.folders.insert("/drive");
    vanishing.vanishing.put("/drive/file", "x");
    expectCloudFailure(404, "The requested iCloud item does not exist.",
                       [&] { exportItem(vanishing, "file", "/out", drive, vanishing.bundle); });
    EXPECT_TRUE(vanishing.vanishing.calls.empty());
}

TEST_F(ICloudOperations, AnOutputThatCannotBeRemovedStays) {
    put("/drive/file", "new");
    put("/out/file", "old");
    files.refused = {"/out/file"};
    EXPECT_EQ(posixError([&] { exported("file", "/out/file"); }).code(), EACCES);
    EXPECT_EQ(files.texts["/out/file"], "old");
}

TEST_F(ICloudOperations, AFolderThatCannotBeRemovedWholeIsSaidToHaveLostAPart) {
    put("/drive/file", "new");
    put("/out/folder/kept", "old");
    files.refused = {"/out/folder"};
    try {
        exported("file", "/out/folder");
        FAIL() << "no failure";
    } catch (const ErrorRecord& error) {
        EXPECT_EQ(error.code(), EACCES);
        EXPECT_EQ(error.description(),
                  "/out/folder: Permission denied (part of what was at /out/folder may already have been removed)");
    }
}

TEST_F(ICloudOperations, AFailedExportSaysWhatWasAlreadyRemoved) {
    put("/drive/file", "new");
    put("/out/file", "old");
    files.failing["/drive/file"] = ENOSPC;
    try {
        exported("file", "/out/file");
        FAIL() << "no failure";
    } catch (const ErrorRecord& error) {
        EXPECT_EQ(error.domain(), "NSPOSIXErrorDomain");
        EXPECT_EQ(error.code(), ENOSPC);
        EXPECT_EQ(error.description(),
                  "/drive/file: No space left on device (what was at /out/file has already been removed)");
        ASSERT_NE(error.underlying(), nullptr);
        EXPECT_EQ(error.underlying()->description(), "/drive/file: No space left on device");
    }
    EXPECT_FALSE(files.texts.contains("/out/file"));
}

TEST_F(ICloudOperations, AFailedExportToANewPathSaysNothingOfThat) {
    put("/drive/file", "new");
    files.failing["/drive/file"] = ENOSPC;
    EXPECT_EQ(posixError([&] { exported("file", "/out/file"); }).description(), "/drive/file: No space left on device");
}

TEST_F(ICloudOperations, AnExportNeverRemovesItsOwnSource) {
    put("/drive/folder/sub/file", "x");
    files.links["/drive/link"] = "/precious/file";
    put("/precious/file", "x");
    const std::pair<const char*, const char*> cases[] = {
        {"folder/sub/file", "/drive/folder/sub/file"},
        {"folder/sub/file", "/drive/folder"},
        {"folder/sub/file", "/drive"},
        {"folder/sub/file", "/"},
        {"folder", "/drive/folder/sub"},
        {"folder", "/drive/folder/sub/new"},
        {"link", "/precious"},
        {"link", "/drive"},
    };
    for (const auto& [path, output] : cases) {
        EXPECT_EQ(posixError([&] { exported(path, output); }).code(), EINVAL) << path << " to " << output;
        EXPECT_TRUE(files.texts.contains("/drive/folder/sub/file"));
        EXPECT_TRUE(files.texts.contains("/precious/file"));
    }
}

TEST_F(ICloudOperations, ARefusedExportMakesNoFolder) {
    put("/drive/folder/sub/file", "x");
    EXPECT_EQ(posixError([&] { exported("folder", "/drive/folder/sub/new/deep/copy"); }).code(), EINVAL);
    EXPECT_TRUE(files.calls.empty());
}

TEST_F(ICloudOperations, AnOutputThatNamesNothingIsRefused) {
    put("/drive/file", "x");
    for (const char* output : {"", " ", "\n"})
        EXPECT_EQ(posixError([&] { exported("file", output); }).code(), ENOENT) << output;
    EXPECT_EQ(posixError([&] { exported("file", std::string("/out\0/x", 7)); }).code(), EINVAL);
    files.existing = files.devices = {"/dev/null"};
    EXPECT_EQ(posixError([&] { exported("file", "/dev/null"); }).code(), EINVAL);
    EXPECT_TRUE(files.calls.empty());
}

TEST_F(ICloudOperations, ADriveThatIsTheRootFolderHasNoDoubledSlash) {
    platform.fakeCloudAccount.drive = "/";
    EXPECT_EQ(told("drive").path, "/drive");
}

} // namespace
} // namespace vesk::test
