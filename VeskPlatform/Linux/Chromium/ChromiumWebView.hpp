#pragma once

#include "VeskPlatform/Linux/Chromium/DevToolsConnection.hpp"
#include "VeskPlatform/Linux/Chromium/EngineProcess.hpp"
#include "VeskPlatform/Linux/WorkFolder.hpp"
#include "VeskPlatform/WebView.hpp"

#include <asio/steady_timer.hpp>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace vesk {

class Environment;

/// How long the engine is waited for; measured, an ordinary page takes 0.2 seconds in all and one of 2,000 table rows
/// less than one.
struct WebEnginePatience {
    std::chrono::milliseconds start{30'000};
    std::chrono::milliseconds load{60'000};
    std::chrono::milliseconds print{120'000};
};

struct WebEngineOptions {
    Environment& environment;
    std::function<void(const std::string& message)> log;
    WebEnginePatience patience{};
    /// Where the engine's program is looked for. Debian's programs themselves come before the scripts of the same
    /// names, which only add time and flags.
    std::vector<std::string> programFolders{"/usr/lib/chromium", "/usr/bin"};
};

/// One page in a browser engine of its own, which a debugging pipe drives. The page has no scripts; whatever it asks
/// of the network or of files is refused and logged. The engine's process and profile live as long as the view.
class ChromiumWebView : public WebView {
public:
    ChromiumWebView(const WebEngineOptions& options, asio::any_io_executor executor);
    ~ChromiumWebView() override;

    /// Opens the page, with a frame of that size in points. Throws WebEngineError.
    Task<void> open(double width, double height);
    void loadHtml(std::string document, WebNavigationDelegate& delegate) override;
    void runPrintOperation(WebPrintJob job, WebPrintDelegate& delegate) override;

private:
    using Json = DevToolsConnection::Json;

    void heard(const std::string& session, const std::string& method, const Json& event);
    void refuse(const Json& request);
    void logRefusal(const std::string& url);
    Task<void> attach();
    Task<void> prepare(double width, double height);
    Task<void> load(std::string document);
    Task<void> print(WebPrintJob job);
    Task<void> forcePaper(const WebPrintJob& job);
    Task<double> fittingScale(double paperWidth);
    Task<void> saveStream(std::string handle, std::string path);
    Task<Json> call(const char* method, Json parameters);
    void limit(std::chrono::milliseconds duration, const char* what);
    [[noreturn]] void failToStart(const std::string& reason) const;

    WebEngineOptions options_;
    asio::any_io_executor executor_;
    WorkFolder folder_;
    EngineProcess process_;
    std::shared_ptr<DevToolsConnection> connection_;
    asio::steady_timer deadline_;
    /// Gone with the view; what was spawned looks at it before it tells a delegate.
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
    std::string session_, frame_;
    std::shared_ptr<DevToolsConnection::Command> attached_, loaded_;
    bool documentOpened_ = false;
};

} // namespace vesk
