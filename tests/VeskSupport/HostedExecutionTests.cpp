#include "VeskSupport/HostedExecution.hpp"

#include "VeskSupport/CallbackAnswer.hpp"
#include "VeskSupport/Continuation.hpp"
#include "VeskSupport/DetachedWork.hpp"
#include "VeskSupport/SerialExecutor.hpp"

#include <asio/co_spawn.hpp>
#include <asio/steady_timer.hpp>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <gtest/gtest.h>
#include <mutex>
#include <string>
#include <thread>

namespace vesk {
namespace {

/// A loop as an application has one: it knows nothing of tasks.
class Loop {
public:
    void post(HostedExecution::Block block) {
        const std::lock_guard lock(mutex_);
        blocks_.push_back(std::move(block));
        filled_.notify_one();
    }
    void stop() { stopped_ = true; }
    void run() {
        while (!stopped_) {
            std::unique_lock lock(mutex_);
            filled_.wait(lock, [this] { return !blocks_.empty(); });
            const HostedExecution::Block block = std::move(blocks_.front());
            blocks_.pop_front();
            lock.unlock();
            block();
        }
    }

private:
    std::mutex mutex_;
    std::condition_variable filled_;
    std::deque<HostedExecution::Block> blocks_;
    bool stopped_ = false;
};

/// Runs a task on a loop until the execution says that it is done; whether the task ended.
bool runHosted(Task<void> task) {
    Loop loop;
    HostedExecution execution([&](HostedExecution::Block block) { loop.post(std::move(block)); }, [&] { loop.stop(); });
    bool ended = false;
    asio::co_spawn(execution.executor(), std::move(task), [&](const std::exception_ptr& failure) {
        EXPECT_FALSE(failure);
        ended = true;
    });
    loop.run();
    return ended;
}

Task<void> sleepTwice(std::thread::id& after) {
    for (int round = 0; round < 2; ++round) {
        asio::steady_timer timer(co_await asio::this_coro::executor, std::chrono::milliseconds(1));
        co_await timer.async_wait(asio::use_awaitable);
    }
    after = std::this_thread::get_id();
}

TEST(HostedExecution, RunsATaskOnTheLoopAndEndsWithIt) {
    std::thread::id after;
    EXPECT_TRUE(runHosted(sleepTwice(after)));
    EXPECT_EQ(after, std::this_thread::get_id());
}

Task<void> waitForAThread(std::string& answer) {
    const std::function<std::string()> work = [] { return std::string("from a thread"); };
    answer = co_await onThreadOfItsOwn(work);
}

TEST(HostedExecution, StaysForWorkOnOtherThreads) {
    std::string answer;
    EXPECT_TRUE(runHosted(waitForAThread(answer)));
    EXPECT_EQ(answer, "from a thread");
}

Task<int> answerLater(Continuation& continuation) {
    co_await continuation.wait();
    co_return 7;
}

Task<void> resume(Continuation& continuation) {
    continuation.resume();
    co_return;
}

Task<void> useAStrand(int& answer) {
    const Executor executor = co_await currentExecutor();
    const SerialExecutor serial(executor);
    Continuation continuation;
    asio::co_spawn(executor, resume(continuation), [](const std::exception_ptr&) {});
    answer = co_await serial.run(answerLater(continuation));
}

TEST(HostedExecution, CarriesSerialExecutorsAndContinuations) {
    int answer = 0;
    EXPECT_TRUE(runHosted(useAStrand(answer)));
    EXPECT_EQ(answer, 7);
}

/// The answer of a callback that nobody holds any more never comes.
Task<void> waitForever() {
    const std::function<void(std::function<void(int)>)> begin = [](const std::function<void(int)>&) {};
    co_await answerOfCallback<int>(begin);
}

/// Frameworks let go of a callback when they like.
Task<void> answerAndKeep(std::function<void(int)>& kept) {
    const std::function<void(std::function<void(int)>)> begin = [&](std::function<void(int)> answer) {
        kept = std::move(answer);
        kept(7);
    };
    EXPECT_EQ(co_await answerOfCallback<int>(begin), 7);
}

TEST(HostedExecution, IsDoneThoughACallbackIsKept) {
    std::function<void(int)> kept;
    EXPECT_TRUE(runHosted(answerAndKeep(kept)));
}

TEST(HostedExecution, IsDoneWhenATaskCanNeverEnd) { EXPECT_FALSE(runHosted(waitForever())); }

} // namespace
} // namespace vesk
