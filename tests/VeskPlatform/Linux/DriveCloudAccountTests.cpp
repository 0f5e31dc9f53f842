#include "VeskPlatform/Linux/DriveCloudAccount.hpp"

#include "tests/fakes/FakeBasics.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

namespace vesk::test {
namespace {

class DriveCloudAccountTests : public ::testing::Test {
protected:
    TemporaryFolder folder;
    FakeEnvironment environment;
    DriveCloudAccount account{environment};

    DriveCloudAccountTests() {
        environment.variables["XDG_DATA_HOME"] = folder / "data";
        environment.variables["VESK_CLOUD_DRIVE"] = folder.path();
    }
};

TEST_F(DriveCloudAccountTests, SignedInIsADriveThatIsAFolder) {
    EXPECT_TRUE(account.hasIdentityToken());
    for (const std::string& drive : {std::string(), folder / "none", folder.write("file", "")}) {
        environment.variables["VESK_CLOUD_DRIVE"] = drive;
        EXPECT_FALSE(account.hasIdentityToken()) << drive;
    }
    environment.variables.erase("VESK_CLOUD_DRIVE");
    EXPECT_FALSE(account.hasIdentityToken());
}

TEST_F(DriveCloudAccountTests, TheDriveIsAbsoluteAndEndsInNoSlash) {
    environment.variables["VESK_CLOUD_DRIVE"] = "/mnt/drive//";
    EXPECT_EQ(account.drivePath(), "/mnt/drive");
    environment.variables["VESK_CLOUD_DRIVE"] = "drive/mine";
    EXPECT_EQ(account.drivePath(), std::filesystem::current_path() / "drive/mine");
    environment.variables["VESK_CLOUD_DRIVE"] = "";
    EXPECT_EQ(account.drivePath(), std::nullopt);
    environment.variables.erase("VESK_CLOUD_DRIVE");
    EXPECT_EQ(account.drivePath(), std::nullopt);
}

TEST_F(DriveCloudAccountTests, ContainersAreMadeOnDemandForTheUserAlone) {
    EXPECT_EQ(account.containerPath("iCloud.app.vesk"), folder / "data/vesk/containers/iCloud.app.vesk");
    EXPECT_EQ(folder.mode("data/vesk/containers/iCloud.app.vesk"), 0700U);
    EXPECT_EQ(account.containerPath("iCloud.app.vesk"), folder / "data/vesk/containers/iCloud.app.vesk");
    EXPECT_EQ(account.containerPath(std::nullopt), folder / "data/vesk/containers/default");
    EXPECT_TRUE(folder.exists("data/vesk/containers/default"));
}

TEST_F(DriveCloudAccountTests, WhoIsNotSignedInReachesNone) {
    environment.variables.erase("VESK_CLOUD_DRIVE");
    EXPECT_EQ(account.containerPath(std::nullopt), std::nullopt);
    EXPECT_FALSE(folder.exists("data"));
}

TEST_F(DriveCloudAccountTests, AnIdentifierNamesOneFolderAndNoOther) {
    for (const std::string& name : {std::string(), std::string("."), std::string(".."), std::string("../up"),
                                    std::string("a/b"), std::string("/"), std::string("a\0b", 3)})
        EXPECT_EQ(account.containerPath(name), std::nullopt) << name;
    EXPECT_FALSE(folder.exists("data"));
}

TEST_F(DriveCloudAccountTests, AContainerThatCannotBeMadeIsNotReached) {
    folder.write("data/vesk/containers", "a file in the way");
    EXPECT_EQ(account.containerPath(std::nullopt), std::nullopt);
    environment = {};
    environment.home = "";
    environment.variables["VESK_CLOUD_DRIVE"] = folder.path();
    EXPECT_EQ(account.containerPath(std::nullopt), std::nullopt);
}

} // namespace
} // namespace vesk::test
