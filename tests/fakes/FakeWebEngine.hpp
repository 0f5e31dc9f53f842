#pragma once

#include "VeskPlatform/PdfDocuments.hpp"
#include "VeskPlatform/WebView.hpp"

#include <asio/post.hpp>
#include <asio/this_coro.hpp>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace vesk::test {

/// Pages that are never laid out: what is asked of them is recorded in `calls`, and the delegates hear of it when the
/// executor comes to it. `loadFailure` and `printSucceeds` say what they hear; with `answersAtOnce` navigation ends
/// before anybody can wait for it.
class FakeWebEngine : public WebEngine {
public:
    std::vector<std::string> calls;
    std::string document;
    std::optional<WebPrintJob> job;
    std::exception_ptr loadFailure;
    bool printSucceeds = true, answersAtOnce = false;
    std::function<void()> whenPrinted = [] {};
    int openViews = 0;

    Task<std::unique_ptr<WebView>> makeView(double width, double height) override {
        const auto executor = co_await asio::this_coro::executor;
        calls.push_back("view " + std::to_string(static_cast<int>(width)) + "x"
                        + std::to_string(static_cast<int>(height)));
        co_return std::make_unique<View>(*this, executor);
    }

private:
    class View : public WebView {
    public:
        View(FakeWebEngine& engine, asio::any_io_executor executor) : engine_(engine), executor_(std::move(executor)) {
            ++engine_.openViews;
        }
        ~View() override { --engine_.openViews; }

        void loadHtml(std::string document, WebNavigationDelegate& delegate) override {
            engine_.calls.emplace_back("load");
            engine_.document = std::move(document);
            const auto tell = [this, &delegate] {
                if (engine_.loadFailure)
                    delegate.didFailNavigation(engine_.loadFailure);
                else
                    delegate.didFinishNavigation();
            };
            if (engine_.answersAtOnce)
                tell();
            else
                asio::post(executor_, tell);
        }

        void runPrintOperation(WebPrintJob job, WebPrintDelegate& delegate) override {
            engine_.calls.push_back("print " + job.outputPath);
            engine_.job = std::move(job);
            engine_.whenPrinted();
            asio::post(executor_, [this, &delegate] { delegate.printOperationDidRun(engine_.printSucceeds); });
        }

    private:
        FakeWebEngine& engine_;
        asio::any_io_executor executor_;
    };
};

/// Every file has `pages`.
class FakePdfDocuments : public PdfDocuments {
public:
    std::optional<std::int64_t> pages = 1;
    std::vector<std::string> opened;

    std::optional<std::int64_t> pageCount(const std::string& path) override {
        opened.push_back(path);
        return pages;
    }
};

} // namespace vesk::test
