#include "VeskPlatform/Linux/ThreadSerialQueue.hpp"
#include "tests/contracts/SerialQueueContract.hpp"
#include "tests/fakes/FakeBasics.hpp"

#include <future>
#include <pthread.h>
#include <system_error>

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

/// New threads want more stack than there are addresses, so the system refuses them.
class NoMoreThreads {
public:
    NoMoreThreads() {
        ::pthread_getattr_default_np(&before_);
        pthread_attr_t huge;
        ::pthread_attr_init(&huge);
        ::pthread_attr_setstacksize(&huge, std::size_t{1} << 50);
        EXPECT_EQ(::pthread_setattr_default_np(&huge), 0);
        ::pthread_attr_destroy(&huge);
    }
    ~NoMoreThreads() {
        ::pthread_setattr_default_np(&before_);
        ::pthread_attr_destroy(&before_);
    }
    NoMoreThreads(const NoMoreThreads&) = delete;
    NoMoreThreads& operator=(const NoMoreThreads&) = delete;

private:
    pthread_attr_t before_{};
};

TEST(ThreadSerialQueueTests, ARefusedThreadDropsItsBlockAndNothingWaitsForIt) {
    std::vector<std::string> ran;
    ThreadSerialQueue queue;
    {
        const NoMoreThreads refused;
        EXPECT_THROW(queue.async([&] { ran.emplace_back("dropped"); }), std::system_error);
    }
    queue.async([&] { ran.emplace_back("run"); });
    queue.drain();
    EXPECT_EQ(ran, std::vector<std::string>{"run"});
    const NoMoreThreads refused;
    ThreadSerialQueue empty;
    EXPECT_THROW(empty.async([] {}), std::system_error);
    if (!HasFailure()) empty.drain();
}

} // namespace
} // namespace vesk::test
