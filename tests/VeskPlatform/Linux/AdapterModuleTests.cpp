#include "VeskPlatform/Linux/AdapterModule.hpp"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vesk {
namespace {

using testing::HasSubstr;

const std::string folder = VESK_BINARY_DIR "/lib/vesk";

/// What opening a module and asking it for a function fails with.
std::string failureOf(const std::string& moduleFolder, const std::string& name, const char* function) {
    try {
        AdapterModule(moduleFolder, name, "libsystemd0").function<void()>(function);
    } catch (const AdapterModuleMissing& error) {
        EXPECT_EQ(error.domain(), "VeskAdapterModule");
        EXPECT_EQ(error.code(), 1);
        return error.description();
    }
    return "no failure";
}

TEST(AdapterModuleTests, ModulesLieBesideTheProgramsFolder) {
    EXPECT_EQ(moduleFolderOf("/opt/vesk/bin/vesk"), "/opt/vesk/lib/vesk");
}

TEST(AdapterModuleTests, AFunctionIsFoundAndFoundAgain) {
    const AdapterModule module(folder, "messaging", "libsystemd0"), again(folder, "messaging", "libsystemd0");
    EXPECT_NE(module.function<void()>("veskMessaging"), nullptr);
    EXPECT_EQ(module.function<void()>("veskMessaging"), again.function<void()>("veskMessaging"));
}

TEST(AdapterModuleTests, AMissingModuleNamesItsPlaceAndThePackage) {
    const std::string text = failureOf(folder, "nothing", "any");
    EXPECT_THAT(text, HasSubstr("install the package libsystemd0"));
    EXPECT_THAT(text, HasSubstr(folder + "/vesk-nothing.so"));
}

TEST(AdapterModuleTests, AModuleWithoutTheFunctionIsAFailureToo) {
    EXPECT_THAT(failureOf(folder, "messaging", "veskNothing"), HasSubstr("veskNothing"));
}

TEST(AdapterModuleTests, OnlyAnAbsoluteFolderIsLookedInto) {
    const std::string relative = std::filesystem::relative(folder).string();
    EXPECT_THAT(failureOf(relative, "messaging", "veskMessaging"), HasSubstr("its folder is unknown"));
    EXPECT_THAT(failureOf("", "messaging", "veskMessaging"), HasSubstr("its folder is unknown"));
}

} // namespace
} // namespace vesk
