#include "VeskPlatform/Linux/AdapterModule.hpp"

#include "VeskPlatform/Linux/MainBundle.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vesk {
namespace {

using testing::HasSubstr;

std::string failureOf(const std::string& folder, const std::string& name, const char* symbol) {
    try {
        const AdapterModule module(folder, name, "libexample0");
        module.function<void()>(symbol);
    } catch (const AdapterModuleMissing& error) {
        EXPECT_EQ(error.domain(), "VeskAdapterModule");
        EXPECT_EQ(error.code(), 1);
        return error.description();
    }
    return {};
}

const std::string here = moduleFolderOf(runningExecutable());

TEST(AdapterModule, LiesBesideTheProgramsFolder) {
    EXPECT_EQ(moduleFolderOf("/opt/vesk/bin/program"), "/opt/vesk/lib/vesk");
}

TEST(AdapterModule, OffersItsFunctions) { EXPECT_EQ(failureOf(here, "gmime", "vesk_message_reader"), ""); }

TEST(AdapterModule, NamesThePackageWhereSomethingIsMissing) {
    const test::TemporaryFolder folder;
    folder.write("vesk-broken.so", "no library");
    for (const auto& [place, name] : {std::pair(here, "none"), std::pair(folder.path(), "broken")})
        EXPECT_THAT(failureOf(place, name, "f"),
                    HasSubstr(std::string("The module vesk-") + name
                              + ".so cannot be loaded; install the package libexample0. ("));
    EXPECT_THAT(failureOf(here, "gmime", "no_such_function"), HasSubstr("no_such_function"));
}

TEST(AdapterModule, IsNeverLookedForElsewhere) {
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(here);
    for (const char* folder : {"", ".", "/$ORIGIN/../lib/vesk", "/${ORIGIN}/../lib/vesk"})
        EXPECT_NE(failureOf(folder, "gmime", "vesk_message_reader"), "") << folder;
    std::filesystem::current_path(before);
}

} // namespace
} // namespace vesk
