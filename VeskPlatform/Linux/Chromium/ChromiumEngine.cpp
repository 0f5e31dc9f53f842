#include "VeskPlatform/Linux/Chromium/ChromiumEngine.hpp"

#include <asio/this_coro.hpp>

namespace vesk {

Task<std::unique_ptr<WebView>> ChromiumEngine::makeView(double width, double height) {
    const auto executor = co_await asio::this_coro::executor;
    auto view = std::make_unique<ChromiumWebView>(options_, executor);
    auto opening = view->open(width, height);
    co_await std::move(opening);
    co_return view;
}

} // namespace vesk
