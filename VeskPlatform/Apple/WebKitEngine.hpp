#pragma once

#include "VeskPlatform/WebView.hpp"

#include <memory>

namespace vesk {

struct WebKitRules;

/// The system's web engine, which keeps the page in a process of its own. Used on the main thread, whose run loop
/// turns.
class WebKitEngine : public WebEngine {
public:
    WebKitEngine();
    Task<std::unique_ptr<WebView>> makeView(double width, double height) override;

private:
    /// Compiled with the first view; shared with the compilation.
    std::shared_ptr<WebKitRules> rules_;
};

} // namespace vesk
