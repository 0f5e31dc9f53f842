#include "VeskShellCore/FullDiskAccessSupport.hpp"

#include "tests/fakes/FakePlatform.hpp"

#include <gmock/gmock.h>

namespace vesk::test {
namespace {

using enum CapabilityAuthorizationState;

class FullDiskAccess : public ::testing::Test {
protected:
    FakePlatform platform;
    FakeFileManager& files = platform.fakeFileManager;

    void expectStatus(CapabilityAuthorizationState state, const std::string& detail,
                      const std::string& home = "/home/dana") {
        std::optional<std::string> remediation;
        if (state == denied) remediation = "Grant Full Disk Access to Vesk in System Settings.";
        EXPECT_EQ(VeskFullDiskAccessSupport::status(platform, home),
                  (CapabilityStatus{.kind = CapabilityKind::fullDiskAccess,
                                    .state = state,
                                    .detail = detail,
                                    .remediation = remediation,
                                    .sharedAuthorizationWith = {}}));
    }
    void expectGranted(const std::string& home = "/home/dana") {
        expectStatus(granted, "Vesk.app can reach protected macOS file locations through Full Disk Access.", home);
    }
    void expectBlockedAt(const std::string& label) {
        expectStatus(denied, "Vesk.app does not have Full Disk Access yet. macOS blocked access to " + label + ".");
    }
    void expectUnclearAt(const std::string& label) {
        expectStatus(denied, "Vesk.app could not verify Full Disk Access from " + label + ".");
    }
};

TEST_F(FullDiskAccess, WithNoneOfThePlacesNothingIsVerified) {
    expectStatus(denied, "Vesk.app could not verify Full Disk Access from the standard protected macOS locations on "
                         "this Mac yet.");
}

TEST_F(FullDiskAccess, TheFirstPlaceThatCanBeReadEndsTheSearch) {
    files.put("/home/dana/.keys", "secret");
    files.folders.insert("/home/dana/.mail");
    expectGranted();
    EXPECT_EQ(files.calls, std::vector<std::string>{"firstBytes /home/dana/.keys"});
}

TEST_F(FullDiskAccess, AMissingPlaceSaysNothing) {
    files.folders.insert("/home/dana/.mail");
    expectGranted();
    EXPECT_EQ(files.calls, std::vector<std::string>{"openDirectory /home/dana/.mail"});
}

TEST_F(FullDiskAccess, AnEmptyFileIsReadable) {
    files.put("/home/dana/.keys", "");
    expectGranted();
}

TEST_F(FullDiskAccess, APlaceThatIsBlockedEndsTheSearch) {
    files.put("/home/dana/.keys", "x");
    files.folders.insert("/home/dana/.mail");
    for (const int code : {EACCES, EPERM}) {
        files.failing["/home/dana/.keys"] = code;
        expectBlockedAt("~/.keys");
    }
    EXPECT_TRUE(files.calls.empty()) << "later places are not tried";
    files.texts.clear();
    files.refused = {"/home/dana/.mail"};
    expectBlockedAt("~/.mail");
}

TEST_F(FullDiskAccess, AnotherFailureIsRememberedUntilALaterPlaceTells) {
    files.put("/home/dana/.keys", "x");
    files.failing["/home/dana/.keys"] = EIO;
    expectUnclearAt("~/.keys");
    files.put("/home/dana/.mail", "x");
    files.failing["/home/dana/.mail"] = EIO;
    expectUnclearAt("~/.mail");
    files.put("/home/dana/.browser", "x");
    files.refused = {"/home/dana/.browser"};
    expectBlockedAt("~/.browser");
    files.refused.clear();
    expectGranted();
}

TEST_F(FullDiskAccess, TheHomeIsExpandedAndStandardized) {
    files.put("/home/dana/.keys", "x");
    for (const char* home : {"~", "/home//dana/", "/home/other/../dana"}) expectGranted(home);
}

} // namespace
} // namespace vesk::test
