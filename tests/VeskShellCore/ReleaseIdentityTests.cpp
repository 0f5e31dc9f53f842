#include "VeskShellCore/ReleaseIdentity.hpp"

#include "tests/fakes/FakePlatform.hpp"

#include <gtest/gtest.h>

namespace vesk {
namespace {

TEST(ReleaseIdentity, IsWhatTheBundleSays) {
    test::FakePlatform platform;
    auto& information = platform.fakeBundleInformation.dictionaries[platform.bundle.path];
    information["CFBundleShortVersionString"] = {std::string(" 1.4.2\n")};
    information["CFBundleVersion"] = {std::string("204")};
    information["VeskReleaseChannel"] = {std::string("beta")};
    EXPECT_EQ(currentRelease(platform, "0.1.0"), AppUpdateReleaseIdentity("1.4.2", "204", "beta"));
}

TEST(ReleaseIdentity, IsTheBuildsOwnWhereNothingSaysIt) {
    test::FakePlatform platform;
    EXPECT_EQ(currentRelease(platform, "0.1.0"), AppUpdateReleaseIdentity("0.1.0", "0", "stable"));
    auto& information = platform.fakeBundleInformation.dictionaries[platform.bundle.path];
    information["CFBundleShortVersionString"] = {std::string(" ")};
    information["CFBundleVersion"] = {std::int64_t{204}};
    EXPECT_EQ(currentRelease(platform, "0.1.0"), AppUpdateReleaseIdentity("0.1.0", "0", "stable"));
}

} // namespace
} // namespace vesk
