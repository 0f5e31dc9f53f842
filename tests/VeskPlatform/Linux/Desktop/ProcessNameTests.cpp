#include "VeskPlatform/Linux/Desktop/ProcessName.hpp"

#include <gtest/gtest.h>
#include <unistd.h>

namespace vesk::test {
namespace {

TEST(ProcessName, IsTheBeginningOfTheProgramsName) { EXPECT_EQ(processName(::getpid()), "VeskDesktopFile"); }

TEST(ProcessName, IsEmptyForAProcessThatIsGone) { EXPECT_EQ(processName(-1), ""); }

} // namespace
} // namespace vesk::test
