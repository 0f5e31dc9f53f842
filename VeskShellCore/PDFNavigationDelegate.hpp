#pragma once

#include "VeskPlatform/WebView.hpp"
#include "VeskSupport/Continuation.hpp"

#include <exception>
#include <functional>
#include <optional>
#include <utility>
#include <variant>

namespace vesk {

/// Waits for a document to load, whether it has done so before or does so after the wait begins.
class PDFNavigationDelegate : public WebNavigationDelegate {
public:
    struct Loading {};
    struct Finished {};
    struct Failed {
        std::exception_ptr error;
    };
    using State = std::variant<Loading, Finished, Failed>;

    const State& state() const { return state_; }

    /// Returns once the document is there; throws the error that kept it. One wait at a time.
    Task<void> waitForLoad();

    void didFinishNavigation() override;
    void didFailNavigation(std::exception_ptr error) override;

private:
    void resume(std::exception_ptr error);

    State state_ = Loading{};
    std::optional<Continuation> continuation_;
};

/// Passes the end of a print operation on.
class PDFPrintDelegate : public WebPrintDelegate {
public:
    explicit PDFPrintDelegate(std::function<void(bool)> whenDone) : completion(std::move(whenDone)) {}

    std::function<void(bool)> completion;

    void printOperationDidRun(bool success) override { completion(success); }
};

} // namespace vesk
