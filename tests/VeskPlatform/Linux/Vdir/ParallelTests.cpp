#include "VeskPlatform/Linux/Vdir/Parallel.hpp"

#include "tests/support/RefusedCalls.hpp"

#include <gtest/gtest.h>
#include <stdexcept>
#include <sys/syscall.h>

namespace vesk::test {
namespace {

using vdir::inParallel;

TEST(ParallelTests, EachNumberIsDoneOnce) {
    for (const std::size_t count : {0, 1, 2, 63, 64, 1000, 20'001}) {
        std::vector<std::atomic<int>> done(count);
        inParallel(count, 64, [&](std::size_t i) { ++done[i]; });
        for (const auto& times : done) EXPECT_EQ(times, 1) << count;
    }
}

TEST(ParallelTests, TheFirstFailureIsThrownWhenAllHaveEnded) {
    for (const std::size_t count : {10, 1000})
        EXPECT_THROW(inParallel(count, 64,
                                [](std::size_t i) {
                                    if (i == 7) throw std::runtime_error("7");
                                }),
                     std::runtime_error);
}

TEST(ParallelTests, WithoutMoreThreadsOneDoesTheWork) {
    EXPECT_EQ(inChild([] {
                  refuseCall(SYS_clone, EAGAIN);
                  refuseCall(SYS_clone3, EAGAIN);
                  std::size_t sum = 0; // one thread alone, so no lock
                  inParallel(1000, 64, [&](std::size_t i) { sum += i; });
                  return sum == 499'500 ? 0 : 1;
              }),
              0);
}

} // namespace
} // namespace vesk::test
