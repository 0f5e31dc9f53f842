#include "VeskSupport/DetachedWork.hpp"

#include "tests/fakes/RunTask.hpp"

#include <future>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace vesk {
namespace {

Task<std::string> detached(std::function<std::string()> work) {
    const std::thread::id caller = std::this_thread::get_id();
    std::string value = co_await onThreadOfItsOwn(std::move(work));
    EXPECT_EQ(std::this_thread::get_id(), caller);
    co_return value;
}

TEST(DetachedWork, RunsElsewhereAndReturnsHere) {
    const std::thread::id here = std::this_thread::get_id();
    const std::function<std::string()> work = [here] {
        return std::this_thread::get_id() == here ? std::string("here") : std::string("elsewhere");
    };
    EXPECT_EQ(test::runTask(detached(work)), "elsewhere");
}

TEST(DetachedWork, LetsAFailureThrough) {
    const std::function<std::string()> work = []() -> std::string { throw PosixError(5, "a file"); };
    EXPECT_THROW(test::runTask(detached(work)), PosixError);
}

/// Each of them waits for the last one to begin: none may wait for another to end.
TEST(DetachedWork, NeverKeepsOtherWorkFromBeginning) {
    constexpr int count = 40;
    std::promise<void> all;
    const std::shared_future<void> allBegan = all.get_future().share();
    std::atomic<int> begun = 0;
    const std::function<std::string()> work = [&] {
        if (++begun == count) all.set_value();
        allBegan.wait();
        return std::string("done");
    };
    asio::io_context context;
    std::vector<std::future<std::string>> outcomes;
    for (int i = 0; i < count; ++i) outcomes.push_back(asio::co_spawn(context, detached(work), asio::use_future));
    context.run();
    for (auto& outcome : outcomes) EXPECT_EQ(outcome.get(), "done");
}

} // namespace
} // namespace vesk
