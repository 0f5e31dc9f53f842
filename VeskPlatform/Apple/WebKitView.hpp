#pragma once

#include "VeskPlatform/WebView.hpp"

#import <WebKit/WebKit.h>

@class VeskNavigationDelegate;
@class VeskPrintDelegate;

NS_ASSUME_NONNULL_BEGIN

namespace vesk {

/// A web view in a window that is never shown. Scripts are off, nothing is kept, and the rules keep it from the network
/// and from files. It waits for the engine without a limit, but for an engine that ends before its time. Used on the
/// main thread.
class WebKitView : public WebView {
public:
    /// With a frame of that size in points.
    WebKitView(double width, double height, WKContentRuleList* rules);
    ~WebKitView() override;
    WebKitView(const WebKitView&) = delete;
    WebKitView& operator=(const WebKitView&) = delete;

    /// Throws ErrorRecord for a document that is no UTF-8.
    void loadHtml(std::string document, WebNavigationDelegate& delegate) override;
    /// Throws ErrorRecord for a title or a path that is no UTF-8.
    void runPrintOperation(WebPrintJob job, WebPrintDelegate& delegate) override;

private:
    WKWebView* webView_;
    NSWindow* window_;
    VeskNavigationDelegate* navigation_;
    VeskPrintDelegate* _Nullable print_ = nil;
};

} // namespace vesk

NS_ASSUME_NONNULL_END
