#pragma once

#include "VeskPlatform/SerialQueue.hpp"
#include "tests/support/OnThreads.hpp"

#include <gtest/gtest.h>
#include <numeric>
#include <thread>
#include <vector>

namespace vesk::test {

/// What every SerialQueue owes. `Queue` is made anew for each test.
template <class Queue> class SerialQueueContract : public ::testing::Test {
protected:
    Queue queue;
};

TYPED_TEST_SUITE_P(SerialQueueContract);

TYPED_TEST_P(SerialQueueContract, DrainingAnEmptyQueueReturns) { this->queue.drain(); }

TYPED_TEST_P(SerialQueueContract, BlocksRunInTheOrderOfSubmission) {
    std::vector<int> ran;
    for (int i = 0; i < 100; ++i) this->queue.async([&ran, i] { ran.push_back(i); });
    this->queue.drain();
    ASSERT_EQ(ran.size(), 100U);
    for (int i = 0; i < 100; ++i) EXPECT_EQ(ran[static_cast<std::size_t>(i)], i);
}

TYPED_TEST_P(SerialQueueContract, SubmittingDoesNotRunTheBlockOnTheCallersThread) {
    bool inside = false, ranInside = false;
    std::thread::id caller = std::this_thread::get_id();
    inside = true;
    this->queue.async([&] { ranInside = inside && std::this_thread::get_id() == caller; });
    inside = false;
    this->queue.drain();
    EXPECT_FALSE(ranInside);
}

TYPED_TEST_P(SerialQueueContract, ABlockMaySubmitAnother) {
    int ran = 0;
    this->queue.async([&] {
        ++ran;
        this->queue.async([&] { ++ran; });
    });
    this->queue.drain();
    this->queue.drain();
    EXPECT_EQ(ran, 2);
}

TYPED_TEST_P(SerialQueueContract, ItGoesOnAfterADrain) {
    int ran = 0;
    for (int round = 1; round <= 3; ++round) {
        this->queue.async([&] { ++ran; });
        this->queue.drain();
        EXPECT_EQ(ran, round);
    }
}

TYPED_TEST_P(SerialQueueContract, ManyThreadsSubmitAtOnce) {
    std::vector<std::vector<int>> ran(8);
    onThreads(ran.size(), [&](std::size_t thread) {
        for (int i = 0; i < 1000; ++i) this->queue.async([&ran, thread, i] { ran[thread].push_back(i); });
    });
    this->queue.drain();
    std::vector<int> inOrder(1000);
    std::iota(inOrder.begin(), inOrder.end(), 0);
    for (const auto& ofOneThread : ran) EXPECT_EQ(ofOneThread, inOrder);
}

REGISTER_TYPED_TEST_SUITE_P(SerialQueueContract, DrainingAnEmptyQueueReturns, BlocksRunInTheOrderOfSubmission,
                            SubmittingDoesNotRunTheBlockOnTheCallersThread, ABlockMaySubmitAnother, ItGoesOnAfterADrain,
                            ManyThreadsSubmitAtOnce);

} // namespace vesk::test
