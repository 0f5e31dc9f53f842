#include "VeskShellCore/PDFNavigationDelegate.hpp"

namespace vesk {

Task<void> PDFNavigationDelegate::waitForLoad() {
    if (std::holds_alternative<Finished>(state_)) co_return;
    if (const Failed* failed = std::get_if<Failed>(&state_)) std::rethrow_exception(failed->error);
    continuation_.emplace();
    std::exception_ptr failure;
    try {
        co_await continuation_->wait();
    } catch (...) {
        failure = std::current_exception();
    }
    continuation_.reset();
    if (failure) std::rethrow_exception(failure);
}

void PDFNavigationDelegate::didFinishNavigation() {
    state_ = Finished{};
    resume(nullptr);
}

void PDFNavigationDelegate::didFailNavigation(std::exception_ptr error) {
    state_ = Failed{error};
    resume(std::move(error));
}

/// A second call finds the wait resumed already and changes nothing of how it ends.
void PDFNavigationDelegate::resume(std::exception_ptr error) {
    if (continuation_) continuation_->resume(std::move(error));
}

} // namespace vesk
