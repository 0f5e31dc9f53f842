#include "VeskPlatform/Linux/AdapterModule.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vesk {
namespace {

std::string failureOf(const AdapterModule& module, const char* function) {
    try {
        module.address(function);
    } catch (const AdapterModuleError& error) {
        EXPECT_EQ(error.domain(), "VeskAdapterModule");
        EXPECT_EQ(error.code(), 1);
        return error.description();
    }
    return "no failure";
}

TEST(AdapterModuleTests, AFunctionIsFoundAndFoundAgain) {
    const AdapterModule module{"VeskMessaging", "libsystemd0"};
    EXPECT_NE(module.address("veskMessaging"), nullptr);
    EXPECT_EQ(module.address("veskMessaging"), module.address("veskMessaging"));
}

TEST(AdapterModuleTests, AMissingModuleNamesItsPlaceAndThePackage) {
    const std::string text = failureOf({"VeskNothing", "libnothing0"}, "any");
    EXPECT_THAT(text, testing::StartsWith("The module VeskNothing cannot be loaded: "));
    EXPECT_THAT(text, testing::HasSubstr(VESK_BINARY_DIR "/lib/vesk/VeskNothing.so"));
    EXPECT_THAT(text, testing::HasSubstr("Install the package libnothing0, or Vesk anew"));
}

TEST(AdapterModuleTests, AModuleWithoutTheFunctionIsAFailureToo) {
    EXPECT_THAT(failureOf({"VeskMessaging", "libsystemd0"}, "veskNothing"), testing::HasSubstr("veskNothing"));
}

} // namespace
} // namespace vesk
