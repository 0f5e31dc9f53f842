#include "VeskPlatform/Linux/Wayland/RestoreToken.hpp"

#include "tests/support/TemporaryFolder.hpp"

#include <filesystem>
#include <gtest/gtest.h>

namespace vesk::test {
namespace {

TEST(RestoreTokenTests, IsKeptInAPrivateFileUntilTheNextOne) {
    const TemporaryFolder folder;
    const RestoreToken token(folder / "state");
    EXPECT_EQ(token.read(), std::nullopt);
    token.write("one");
    token.write("two");
    EXPECT_EQ(RestoreToken(folder / "state").read(), "two");
    EXPECT_EQ(std::filesystem::status(folder / "state/remote-desktop-token").permissions(),
              std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
}

TEST(RestoreTokenTests, AnEmptyOneForgets) {
    const TemporaryFolder folder;
    const RestoreToken token(folder / "state");
    token.write("");
    token.write("one");
    token.write("");
    EXPECT_EQ(token.read(), std::nullopt);
    EXPECT_FALSE(std::filesystem::exists(folder / "state/remote-desktop-token"));
}

TEST(RestoreTokenTests, AFolderThatCannotBeMadeIsNoFailure) {
    const TemporaryFolder folder;
    const RestoreToken token(folder.write("file", "") + "/state");
    token.write("one");
    token.write("");
    EXPECT_EQ(token.read(), std::nullopt);
}

} // namespace
} // namespace vesk::test
