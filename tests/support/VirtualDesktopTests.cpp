#include "tests/support/VirtualDesktop.hpp"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>

namespace vesk::test {
namespace {

/// A killed server leaves its lock, and a later one with the same process number takes itself for the owner.
TEST(VirtualDesktop, TakesNoNumberThatALockIsLeftOf) {
    std::string first;
    {
        const VirtualDesktop desktop;
        first = desktop.display();
    }
    const std::string lock = "/tmp/.X" + first.substr(1) + "-lock";
    std::ofstream(lock) << "         1\n";
    {
        const VirtualDesktop desktop;
        EXPECT_NE(desktop.display(), first);
    }
    std::filesystem::remove(lock);
}

TEST(VirtualDesktop, LeavesNoLockOfAServerThatWasKilled) {
    std::string lock;
    {
        VirtualDesktop desktop;
        lock = "/tmp/.X" + desktop.display().substr(1) + "-lock";
        EXPECT_TRUE(std::filesystem::exists(lock));
        desktop.end();
    }
    EXPECT_FALSE(std::filesystem::exists(lock));
}

} // namespace
} // namespace vesk::test
