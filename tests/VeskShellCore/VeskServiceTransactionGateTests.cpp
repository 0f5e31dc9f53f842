#include "VeskShellCore/VeskServiceTransactionGate.hpp"
#include "VeskSupport/Continuation.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <algorithm>
#include <asio/co_spawn.hpp>
#include <asio/detached.hpp>
#include <asio/io_context.hpp>
#include <asio/post.hpp>
#include <asio/thread_pool.hpp>
#include <asio/use_future.hpp>
#include <future>
#include <gtest/gtest.h>
#include <map>
#include <numeric>
#include <string>
#include <vector>

namespace vesk::test {
namespace {

class VeskServiceTransactionGateTests : public testing::Test {
protected:
    asio::io_context context;
    VeskServiceTransactionGate gate;
    std::vector<std::string> events;
    std::map<std::string, Continuation> held;

    /// An operation that tells of its start and its end, and in between waits for `finish`.
    std::function<Task<std::string>()> operation(std::string name) {
        return [this, name]() -> Task<std::string> {
            events.push_back("start " + name);
            co_await held[name].wait();
            events.push_back("end " + name);
            co_return name;
        };
    }
    std::future<std::string> call(const std::string& name) {
        return asio::co_spawn(context, gate.run(operation(name)), asio::use_future);
    }
    /// Runs what can run now.
    void settle() {
        context.restart();
        context.poll();
    }
    void finish(const std::string& name, std::exception_ptr failure = nullptr) {
        held[name].resume(std::move(failure));
        settle();
    }
};

TEST_F(VeskServiceTransactionGateTests, OneCallPassesAtOnce) {
    auto first = call("a");
    settle();
    EXPECT_EQ(events, std::vector<std::string>{"start a"});
    finish("a");
    EXPECT_EQ(first.get(), "a");
}

TEST_F(VeskServiceTransactionGateTests, CallsThatOverlapFinishInTheirOrder) {
    auto a = call("a"), b = call("b"), c = call("c");
    settle();
    EXPECT_EQ(events, std::vector<std::string>{"start a"});
    finish("b"); // has not begun, and ends as soon as it has
    finish("c");
    EXPECT_EQ(events, std::vector<std::string>{"start a"});
    finish("a");
    EXPECT_EQ(events, (std::vector<std::string>{"start a", "end a", "start b", "end b", "start c", "end c"}));
    EXPECT_EQ(a.get() + b.get() + c.get(), "abc");
}

TEST_F(VeskServiceTransactionGateTests, ANewcomerNeverSlipsIn) {
    auto a = call("a"), b = call("b"), c = call("c");
    settle();
    // The fourth calls between the release of the first and the turn of the second.
    held["a"].resume();
    std::future<std::string> d;
    asio::post(context, [&] { d = call("d"); });
    settle();
    EXPECT_EQ(events, (std::vector<std::string>{"start a", "end a", "start b"}));
    finish("b");
    EXPECT_EQ(events.back(), "start c");
    finish("c");
    EXPECT_EQ(events.back(), "start d");
    finish("d");
    EXPECT_EQ(d.get(), "d");
}

TEST_F(VeskServiceTransactionGateTests, AnEmptyGateOpensAgain) {
    for (const std::string name : {"a", "b", "c"}) {
        auto outcome = call(name);
        settle();
        finish(name);
        EXPECT_EQ(outcome.get(), name);
    }
}

TEST_F(VeskServiceTransactionGateTests, AFailureReleasesTheGateAndPassesOn) {
    auto a = call("a"), b = call("b");
    settle();
    finish("a", std::make_exception_ptr(ErrorRecord("domain", 7, "failed")));
    EXPECT_EQ(events.back(), "start b");
    finish("b");
    EXPECT_EQ(b.get(), "b");
    try {
        a.get();
        FAIL();
    } catch (const ErrorRecord& error) {
        EXPECT_EQ(error.code(), 7);
    }
}

TEST_F(VeskServiceTransactionGateTests, AnOperationThatFailsBeforeItsTaskReleasesTheGateToo) {
    std::function<Task<std::string>()> broken = []() -> Task<std::string> {
        throw ErrorRecord("domain", 8, "no task");
    };
    auto a = asio::co_spawn(context, gate.run(broken), asio::use_future);
    auto b = call("b");
    settle();
    EXPECT_THROW(a.get(), ErrorRecord);
    finish("b");
    EXPECT_EQ(b.get(), "b");
}

TEST_F(VeskServiceTransactionGateTests, OperationsWithoutAValuePass) {
    std::function<Task<void>()> plain = [this]() -> Task<void> {
        events.emplace_back("ran");
        co_return;
    };
    std::function<Task<void>()> failing = []() -> Task<void> {
        throw ErrorRecord("domain", 9, "failed");
        co_return;
    };
    auto first = asio::co_spawn(context, gate.run(failing), asio::use_future);
    auto second = asio::co_spawn(context, gate.run(plain), asio::use_future);
    settle();
    EXPECT_THROW(first.get(), ErrorRecord);
    second.get();
    EXPECT_EQ(events, std::vector<std::string>{"ran"});
}

TEST_F(VeskServiceTransactionGateTests, TenThousandCallersPassInTheirOrder) {
    constexpr int count = 10'000;
    std::vector<int> order;
    int inside = 0, mostInside = 0;
    for (int i = 0; i < count; ++i) {
        std::function<Task<int>()> each = [&, i]() -> Task<int> {
            mostInside = std::max(mostInside, ++inside);
            Continuation pause;
            asio::post(context, [&pause] { pause.resume(); });
            co_await pause.wait();
            order.push_back(i);
            --inside;
            co_return i;
        };
        asio::co_spawn(context, gate.run(each), asio::detached);
    }
    context.run();
    std::vector<int> expected(count);
    std::iota(expected.begin(), expected.end(), 0);
    EXPECT_EQ(order, expected);
    EXPECT_EQ(mostInside, 1);
}

TEST_F(VeskServiceTransactionGateTests, AnotherThreadsCallEndsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(
        {
            asio::thread_pool elsewhere(1);
            asio::co_spawn(elsewhere, gate.run(operation("a")), asio::use_future).get();
        },
        "VeskServiceTransactionGate was used outside the main executor.");
}

} // namespace
} // namespace vesk::test
