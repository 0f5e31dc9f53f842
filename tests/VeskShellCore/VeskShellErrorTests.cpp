#include "VeskShellCore/VeskShellError.hpp"

#include <gtest/gtest.h>

namespace vesk {
namespace {

TEST(VeskShellError, TextsForPeople) {
    EXPECT_EQ(VeskShellError::runtimeManifestNotFound({"/a", "/b"}).description(),
              "Unable to find a packaged Vesk runtime manifest. Checked: /a, /b");
    EXPECT_EQ(VeskShellError::capabilityBrokerNotFound({}).description(),
              "Unable to find the Vesk capability broker. Checked: ");
    EXPECT_EQ(VeskShellError::invalidManifest("M").description(), "Invalid packaged runtime manifest: M");
    EXPECT_EQ(VeskShellError::invalidResponse("R").description(), "Invalid packaged runtime response: R");
    EXPECT_EQ(VeskShellError::keychainError("Locked", -25308).description(), "Locked (OSStatus -25308)");
}

TEST(VeskShellError, AFailedProcessShowsItsOwnWordsAndNotItsCommand) {
    const auto error = VeskShellError::processFailed("/bin/tool secret", 3, "fatal error Error: Out of luck");
    EXPECT_EQ(error.description(), "Out of luck");
    EXPECT_EQ(error.command(), "/bin/tool secret");
    EXPECT_EQ(error.status(), 3);
    EXPECT_EQ(error.standardError(), "fatal error Error: Out of luck");
    EXPECT_EQ(VeskShellError::processFailed("c", 1, " \n").description(), "A packaged runtime command failed.");
}

} // namespace
} // namespace vesk
