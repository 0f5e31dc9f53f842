#include "VeskShellCore/ICloudRoots.hpp"

#include "tests/VeskShellCore/CloudWorld.hpp"

namespace vesk::test {
namespace {

using enum CapabilityICloudScope;

struct ICloudRoots : CloudWorld {
    ICloudRoot resolved(CapabilityICloudScope scope) { return resolveICloudRoot(platform, scope, platform.bundle); }
    void expectFailure(CapabilityICloudScope scope, std::int64_t code, const std::string& text) {
        expectCloudFailure(code, text, [&] { resolved(scope); });
    }
};

TEST_F(ICloudRoots, TheDriveIsTheUsers) {
    const ICloudRoot root = resolved(drive);
    EXPECT_EQ(root.scope, drive);
    EXPECT_EQ(root.containerIdentifier, "com.apple.CloudDocs");
    EXPECT_EQ(root.containerPath, "/drive");
    EXPECT_EQ(root.rootPath, "/drive");
    EXPECT_EQ(root.detail, "Vesk.app is using the user's iCloud Drive root.");
    EXPECT_TRUE(files.calls.empty());
}

TEST_F(ICloudRoots, TheDocumentsAreMadeInTheContainer) {
    const ICloudRoot root = resolved(appDocuments);
    EXPECT_EQ(root.scope, appDocuments);
    EXPECT_EQ(root.containerIdentifier, "c");
    EXPECT_EQ(root.containerPath, "/containers/c");
    EXPECT_EQ(root.rootPath, "/containers/c/Documents");
    EXPECT_EQ(root.detail, "Vesk.app is using its iCloud Drive documents container.");
    EXPECT_EQ(files.made, std::vector<std::string>{"/containers/c/Documents"});
}

TEST_F(ICloudRoots, DocumentsThatCannotBeMadeFailWithTheSystemsError) {
    files.refused = {"/containers/c/Documents"};
    EXPECT_THROW(resolved(appDocuments), PosixError);
}

TEST_F(ICloudRoots, ABuildWithoutTheCloudIsRefused) {
    info = {};
    for (const auto scope : {drive, appDocuments})
        expectFailure(scope, 400, "This Vesk build is not configured for iCloud Drive access.");
}

TEST_F(ICloudRoots, DocumentsNeedAContainerOfTheBuild) {
    info = {{"VeskICloudEnabled", {true}}};
    platform.fakeCloudAccount.containers["default"] = "/containers/default";
    expectFailure(appDocuments, 400, "This Vesk build is not configured for iCloud Drive access.");
    EXPECT_EQ(resolved(drive).rootPath, "/drive");
}

TEST_F(ICloudRoots, AStatusThatIsNotGrantedIsRefusedInItsOwnWords) {
    platform.fakeCloudAccount.containers.clear();
    expectFailure(drive, 403,
                  "Vesk is set up for iCloud, but it cannot reach iCloud on this Mac right now. Check iCloud Drive on "
                  "this Mac and try again.");
    platform.fakeCloudAccount.signedIn = false;
    expectFailure(drive, 403,
                  "Sign in to iCloud Drive on this Mac to use iCloud with Vesk. Open System Settings, sign in to "
                  "iCloud, and turn on iCloud Drive.");
    EXPECT_TRUE(files.calls.empty());
}

TEST_F(ICloudRoots, AContainerThatGoesMeanwhileIsNotReachable) {
    struct Vanishing : FakeCloudAccount {
        bool hasIdentityToken() override { return true; }
        std::optional<std::string> containerPath(const std::optional<std::string>&) override {
            return asked++ == 0 ? std::optional<std::string>("/containers/c") : std::nullopt;
        }
        int asked = 0;
    };
    struct VanishingPlatform : FakePlatform {
        CloudAccount& cloudAccount() override { return account; }
        Vanishing account;
    };
    VanishingPlatform vanishing;
    vanishing.fakeBundleInformation = platform.fakeBundleInformation;
    expectCloudFailure(404, "The configured Vesk iCloud container is not reachable on this Mac.",
                       [&] { resolveICloudRoot(vanishing, appDocuments, vanishing.bundle); });
}

TEST_F(ICloudRoots, ADriveThatIsNoFolderIsNotReachable) {
    const std::string text = "The user's iCloud Drive root is not reachable on this Mac.";
    platform.fakeCloudAccount.drive = "/none";
    expectFailure(drive, 404, text);
    put("/file", "x");
    platform.fakeCloudAccount.drive = "/file";
    expectFailure(drive, 404, text);
    platform.fakeCloudAccount.drive = std::nullopt;
    expectFailure(drive, 404, text);
}

} // namespace
} // namespace vesk::test
