#include "VeskPlatform/Linux/ThreadSerialQueue.hpp"
#include "tests/contracts/SerialQueueContract.hpp"
#include "tests/fakes/FakeBasics.hpp"

#include <future>

namespace vesk::test {
namespace {

using Queues = ::testing::Types<FakeSerialQueue, ThreadSerialQueue>;
INSTANTIATE_TYPED_TEST_SUITE_P(All, SerialQueueContract, Queues);

TEST(ThreadSerialQueueTests, TheDestructorRunsWhatIsStillQueued) {
    int ran = 0;
    {
        std::promise<void> gate; // outlives the queue, whose last blocks run when it ends
        ThreadSerialQueue queue;
        queue.async([&gate] { gate.get_future().wait(); });
        for (int i = 0; i < 10; ++i) queue.async([&] { ++ran; });
        gate.set_value();
    }
    EXPECT_EQ(ran, 10);
}

TEST(ThreadSerialQueueTests, SubmittingDoesNotWaitForTheBlockBefore) {
    std::promise<void> gate;
    ThreadSerialQueue queue;
    queue.async([&gate] { gate.get_future().wait(); });
    queue.async([] {}); // would never return if it waited
    gate.set_value();
    queue.drain();
}

TEST(ThreadSerialQueueTests, AnUnusedQueueHasNoThreadToWaitFor) { const ThreadSerialQueue queue; }

TEST(ThreadSerialQueueTests, WhatABlockHoldsIsGoneWhenTheQueueHasDrained) {
    ThreadSerialQueue queue;
    auto held = std::make_shared<int>(1);
    const std::weak_ptr<int> watched = held;
    queue.async([held = std::move(held)] {});
    queue.drain();
    EXPECT_TRUE(watched.expired());
}

} // namespace
} // namespace vesk::test
