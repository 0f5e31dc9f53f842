#pragma once

#include "VeskPlatform/Linux/Chromium/ChromiumWebView.hpp"

namespace vesk {

/// Debian's Chromium without a window, a process for each view.
class ChromiumEngine : public WebEngine {
public:
    explicit ChromiumEngine(WebEngineOptions options) : options_(std::move(options)) {}
    Task<std::unique_ptr<WebView>> makeView(double width, double height) override;

private:
    WebEngineOptions options_;
};

} // namespace vesk
