#include "VeskPlatform/Linux/Secrets/LinuxKeychain.hpp"

#include "VeskPlatform/Portable/FileDescriptor.hpp"
#include "tests/fakes/FakeBasics.hpp"
#include "tests/support/BusService.hpp"
#include "tests/support/PrivateKeyring.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace vesk::test {
namespace {

using ::testing::HasSubstr;

class LinuxKeychainTests : public ::testing::Test {
protected:
    TemporaryFolder folder;
    FakeEnvironment environment;
    std::vector<std::string> logged;

    LinuxKeychainOptions options() {
        LinuxKeychainOptions made =
            linuxKeychainOptions(environment, std::string(VESK_BINARY_DIR "/lib/vesk"), folder / "state");
        made.service.log = made.file.log = [this](const std::string& line) { logged.push_back(line); };
        return made;
    }
    void useBus(const std::string& address) {
        environment.variables["DBUS_SESSION_BUS_ADDRESS"] = address;
        ::setenv("DBUS_SESSION_BUS_ADDRESS", address.c_str(), 1);
    }
    bool hasFile() const { return folder.exists("state/secrets.sqlite"); }
};

TEST_F(LinuxKeychainTests, TheEnvironmentTellsTheOptions) {
    EXPECT_FALSE(options().namesSessionBus);
    EXPECT_EQ(options().file.folder, folder / "state");
    EXPECT_EQ(options().file.passphraseFile, "");
    environment.variables = {{"DBUS_SESSION_BUS_ADDRESS", ""}, {"VESK_SECRETS_PASSPHRASE_FILE", "/p"}};
    EXPECT_FALSE(options().namesSessionBus);
    EXPECT_EQ(options().file.passphraseFile, "/p");
    environment.variables = {{"DBUS_SESSION_BUS_ADDRESS", "unix:path=/x"}};
    EXPECT_TRUE(options().namesSessionBus);
}

TEST_F(LinuxKeychainTests, ASocketInTheRuntimeFolderIsASessionBus) {
    environment.variables = {{"XDG_RUNTIME_DIR", folder.path()}};
    EXPECT_FALSE(options().namesSessionBus);
    folder.write("bus", "no socket");
    EXPECT_FALSE(options().namesSessionBus);
    std::filesystem::remove(folder / "bus");
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    (folder / "bus").copy(address.sun_path, sizeof(address.sun_path) - 1);
    const FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM, 0));
    ASSERT_EQ(::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
    EXPECT_TRUE(options().namesSessionBus);
}

TEST_F(LinuxKeychainTests, WithoutABusTheFileServesAndNoModuleIsLoaded) {
    LinuxKeychainOptions bare = options();
    bare.moduleFolder = "/nowhere";
    LinuxKeychain keychain(bare);
    EXPECT_EQ(keychain.update("Vesk", "A", "x"), KeychainStatus::itemNotFound);
    EXPECT_EQ(keychain.add("Vesk", "A", "x"), KeychainStatus::success);
    EXPECT_EQ(keychain.copy("Vesk", "A").bytes, "x");
    EXPECT_EQ(keychain.find("Vesk", "A"), KeychainStatus::success);
    EXPECT_EQ(keychain.remove("Vesk", "A"), KeychainStatus::success);
    EXPECT_EQ(keychain.removeAll("Vesk"), KeychainStatus::itemNotFound);
    EXPECT_TRUE(hasFile());
    EXPECT_TRUE(keychain.survey().file);
    EXPECT_TRUE(logged.empty());
}

TEST_F(LinuxKeychainTests, ABusThatIsNotThereMeansTheFile) {
    useBus("unix:path=" + folder.path() + "/nothing");
    LinuxKeychain keychain(options());
    EXPECT_EQ(keychain.add("Vesk", "A", "x"), KeychainStatus::success);
    EXPECT_TRUE(hasFile());
}

TEST_F(LinuxKeychainTests, ABusWithoutTheServiceMeansTheFile) {
    PrivateBus bus;
    useBus(bus.address());
    LinuxKeychain keychain(options());
    EXPECT_EQ(keychain.add("Vesk", "A", "x"), KeychainStatus::success);
    EXPECT_TRUE(hasFile());
    EXPECT_TRUE(keychain.survey().file);
    EXPECT_FALSE(keychain.survey().service);
}

TEST_F(LinuxKeychainTests, AServiceOnTheBusServes) {
    const PrivateKeyring keyring;
    useBus(keyring.address());
    LinuxKeychain keychain(options());
    EXPECT_EQ(keychain.add("Vesk", "A", "x"), KeychainStatus::success);
    EXPECT_EQ(keychain.copy("Vesk", "A").bytes, "x");
    EXPECT_FALSE(hasFile());
    const KeychainSurvey survey = keychain.survey();
    ASSERT_TRUE(survey.service);
    EXPECT_EQ(survey.service->isLocked, false);
}

TEST_F(LinuxKeychainTests, AServiceThatWouldBeStartedServesAlsoWhereItCannotBe) {
    PrivateBus bus;
    bus.addActivatable("org.freedesktop.secrets", "/bin/false");
    useBus(bus.address());
    LinuxKeychain keychain(options());
    EXPECT_EQ(keychain.copy("Vesk", "A").status, KeychainStatus::unavailable);
    EXPECT_EQ(keychain.add("Vesk", "A", "x"), KeychainStatus::unavailable);
    EXPECT_FALSE(hasFile());
}

TEST_F(LinuxKeychainTests, ABusThatDoesNotAnswerIsUnavailable) {
    const FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    (folder / "silent").copy(address.sun_path, sizeof(address.sun_path) - 1);
    ASSERT_EQ(::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
    ASSERT_EQ(::listen(socket.get(), 5), 0);
    useBus("unix:path=" + folder.path() + "/silent");
    LinuxKeychainOptions hasty = options();
    hasty.service.patience = std::chrono::milliseconds(300);
    LinuxKeychain keychain(hasty);
    EXPECT_EQ(keychain.copy("Vesk", "A").status, KeychainStatus::unavailable);
    EXPECT_EQ(keychain.survey().trouble, "The session bus does not answer.");
    EXPECT_FALSE(hasFile());
    EXPECT_THAT(logged, ::testing::Contains("secrets: The session bus or its Secret Service does not answer."));
}

TEST_F(LinuxKeychainTests, AMissingModuleIsUnavailableAndNamesItsPackage) {
    PrivateBus bus;
    useBus(bus.address());
    LinuxKeychainOptions bare = options();
    bare.moduleFolder = folder / "modules";
    LinuxKeychain keychain(bare);
    EXPECT_EQ(keychain.add("Vesk", "A", "x"), KeychainStatus::unavailable);
    EXPECT_THAT(keychain.survey().trouble, HasSubstr("install the package libsecret-1-0"));
    EXPECT_FALSE(hasFile());
    ASSERT_EQ(logged.size(), 1U);
    EXPECT_THAT(logged.front(), HasSubstr("vesk-secrets.so"));
}

} // namespace
} // namespace vesk::test
