#include "VeskSupport/CallbackAnswer.hpp"

#include "VeskSupport/ErrorRecord.hpp"
#include "tests/fakes/RunTask.hpp"

#include <gtest/gtest.h>
#include <string>
#include <thread>

namespace vesk {
namespace {

using Answer = std::function<void(std::string)>;

Task<std::string> answered(std::function<void(Answer)> begin) {
    const std::thread::id caller = std::this_thread::get_id();
    std::string value = co_await answerOfCallback<std::string>(std::move(begin));
    EXPECT_EQ(std::this_thread::get_id(), caller);
    co_return value;
}

TEST(CallbackAnswer, MayComeBeforeTheBeginningReturns) {
    EXPECT_EQ(test::runTask(answered([](const Answer& answer) { answer("at once"); })), "at once");
}

TEST(CallbackAnswer, FromAnotherThreadIsHeardOnTheCallers) {
    const auto begin = [](const Answer& answer) { std::thread([answer] { answer("later"); }).detach(); };
    EXPECT_EQ(test::runTask(answered(begin)), "later");
}

TEST(CallbackAnswer, CountsOnce) {
    const auto begin = [](const Answer& answer) {
        answer("first");
        answer("second");
    };
    EXPECT_EQ(test::runTask(answered(begin)), "first");
}

TEST(CallbackAnswer, ThatIsKeptAfterItsCallKeepsNothingWaiting) {
    Answer kept;
    const auto begin = [&kept](const Answer& answer) {
        kept = answer;
        answer("first");
    };
    EXPECT_EQ(test::runTask(answered(begin)), "first");
    kept("after the end");
}

TEST(CallbackAnswer, AFailureOfTheBeginningIsThrown) {
    const auto begin = [](const Answer&) { throw PosixError(5, "a file"); };
    EXPECT_THROW(test::runTask(answered(begin)), PosixError);
}

TEST(CallbackAnswer, StandsWhereTheBeginningFailsAfterIt) {
    const auto begin = [](const Answer& answer) {
        answer("first");
        throw PosixError(5, "a file");
    };
    EXPECT_EQ(test::runTask(answered(begin)), "first");
}

} // namespace
} // namespace vesk
