#include "VeskShellCore/PDFNavigationDelegate.hpp"
#include "tests/fakes/RunTask.hpp"

#include <asio/post.hpp>
#include <gtest/gtest.h>
#include <stdexcept>

namespace vesk {
namespace {

std::exception_ptr failure(const char* text) { return std::make_exception_ptr(std::runtime_error(text)); }

/// Waits, with `happenings` coming to the delegate while the wait is suspended.
Task<void> waitWhile(PDFNavigationDelegate& delegate, std::function<void()> happenings) {
    asio::post(co_await asio::this_coro::executor, std::move(happenings));
    co_await delegate.waitForLoad();
}

TEST(PDFNavigationDelegate, BeginsLoading) {
    EXPECT_TRUE(std::holds_alternative<PDFNavigationDelegate::Loading>(PDFNavigationDelegate().state()));
}

TEST(PDFNavigationDelegate, AnEndBeforeTheWaitIsSeenByIt) {
    PDFNavigationDelegate delegate;
    delegate.didFinishNavigation();
    EXPECT_TRUE(std::holds_alternative<PDFNavigationDelegate::Finished>(delegate.state()));
    test::runTask(delegate.waitForLoad());
}

TEST(PDFNavigationDelegate, AFailureBeforeTheWaitIsThrownByIt) {
    PDFNavigationDelegate delegate;
    delegate.didFailNavigation(failure("gone"));
    EXPECT_TRUE(std::holds_alternative<PDFNavigationDelegate::Failed>(delegate.state()));
    EXPECT_THROW(test::runTask(delegate.waitForLoad()), std::runtime_error);
}

TEST(PDFNavigationDelegate, TheEndResumesTheWait) {
    PDFNavigationDelegate delegate;
    test::runTask(waitWhile(delegate, [&] { delegate.didFinishNavigation(); }));
}

TEST(PDFNavigationDelegate, AFailureResumesTheWaitByThrowing) {
    PDFNavigationDelegate delegate;
    EXPECT_THROW(test::runTask(waitWhile(delegate, [&] { delegate.didFailNavigation(failure("gone")); })),
                 std::runtime_error);
}

TEST(PDFNavigationDelegate, ASecondCallbackChangesTheStateAndNotTheWait) {
    PDFNavigationDelegate delegate;
    test::runTask(waitWhile(delegate, [&] {
        delegate.didFinishNavigation();
        delegate.didFailNavigation(failure("late"));
    }));
    EXPECT_TRUE(std::holds_alternative<PDFNavigationDelegate::Failed>(delegate.state()));
}

TEST(PDFPrintDelegate, PassesTheOutcomeOn) {
    std::vector<bool> heard;
    PDFPrintDelegate delegate([&](bool success) { heard.push_back(success); });
    delegate.printOperationDidRun(true);
    delegate.printOperationDidRun(false);
    EXPECT_EQ(heard, (std::vector{true, false}));
}

} // namespace
} // namespace vesk
