#pragma once

#include "VeskSupport/Task.hpp"

#include <exception>
#include <memory>
#include <optional>
#include <string>

namespace vesk {

/// Hears how the loading of a document ended. Called on the main executor, after the call that started it.
class WebNavigationDelegate {
public:
    virtual ~WebNavigationDelegate() = default;
    virtual void didFinishNavigation() = 0;
    virtual void didFailNavigation(std::exception_ptr error) = 0;
};

/// Hears how a print operation ended. Called on the main executor, after the call that started it.
class WebPrintDelegate {
public:
    virtual ~WebPrintDelegate() = default;
    virtual void printOperationDidRun(bool success) = 0;
};

/// One print job into a PDF file. Margins are zero, nothing is centred, there is neither header nor footer,
/// backgrounds and colours are printed, content that is wider than the page is made smaller to fit, and there are as
/// many pages as the content needs.
struct WebPrintJob {
    /// Of the paper as it is turned, in points (1/72 inch).
    double paperWidth = 0, paperHeight = 0;
    bool landscape = false;
    std::optional<std::string> jobTitle{};
    std::string outputPath{};
};

/// An off-screen page without scripts, network and files. Destroying it ends what is under way; delegates hear nothing
/// of that.
class WebView {
public:
    virtual ~WebView() = default;
    /// Loads an HTML document with no base URL. The delegate outlives the view.
    virtual void loadHtml(std::string document, WebNavigationDelegate& delegate) = 0;
    /// Prints what is loaded. The delegate outlives the view.
    virtual void runPrintOperation(WebPrintJob job, WebPrintDelegate& delegate) = 0;
};

/// The engine that lays out HTML. Called on the main executor.
class WebEngine {
public:
    virtual ~WebEngine() = default;
    /// A view whose frame has that size in points. Throws ErrorRecord where there is no engine or it does not start.
    virtual Task<std::unique_ptr<WebView>> makeView(double width, double height) = 0;
};

} // namespace vesk
