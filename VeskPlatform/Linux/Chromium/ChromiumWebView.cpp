#include "VeskPlatform/Linux/Chromium/ChromiumWebView.hpp"

#include "VeskPlatform/Linux/Chromium/EngineLog.hpp"
#include "VeskPlatform/Linux/Chromium/PrintStyle.hpp"
#include "VeskPlatform/Linux/Chromium/WebEngineError.hpp"
#include "VeskSupport/Base64.hpp"

#include <algorithm>
#include <asio/co_spawn.hpp>
#include <atomic>
#include <cerrno>
#include <cmath>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace vesk {
namespace {

constexpr double pointsPerInch = 72, pixelsPerInch = 96;

/// A document that is being written. One that is not finished goes again: half a document is none. What is no file of
/// the disk stays.
class GrowingDocument {
public:
    explicit GrowingDocument(const std::string& path)
        : path_(path), file_(::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666)) {
        struct stat status {};
        if (!file_ || ::fstat(file_.get(), &status) != 0) throw PosixError(errno, path);
        isFile_ = S_ISREG(status.st_mode);
    }
    ~GrowingDocument() {
        if (isFile_ && !isFinished_) ::unlink(path_.c_str());
    }
    GrowingDocument(const GrowingDocument&) = delete;
    GrowingDocument& operator=(const GrowingDocument&) = delete;

    void append(std::string_view bytes) const { writeAll(file_, bytes, path_); }
    void finish() {
        file_.close(path_);
        isFinished_ = true;
    }

private:
    std::string path_;
    FileDescriptor file_;
    bool isFile_ = false, isFinished_ = false;
};

double pixels(double points) { return points / pointsPerInch * pixelsPerInch; }

/// Of the views of all processes that share a folder for temporary files.
std::string uniqueName() {
    static std::atomic<unsigned> views{0};
    return std::to_string(::getpid()) + "-" + std::to_string(++views);
}

std::exception_ptr timedOut(const char* what, std::chrono::milliseconds limit) {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(limit).count();
    return std::make_exception_ptr(
        WebEngineError(WebEngineError::Kind::timedOut, "The browser engine did not " + std::string(what) + " within "
                                                           + std::to_string(seconds) + " seconds."));
}

/// An answer of another shape than the protocol's is the engine's failure too.
std::exception_ptr typed(std::exception_ptr failure) {
    try {
        std::rethrow_exception(failure);
    } catch (const nlohmann::json::exception&) {
        return std::make_exception_ptr(
            WebEngineError(WebEngineError::Kind::broken, "The browser engine answered in an unexpected way."));
    } catch (...) {
        return failure;
    }
}

std::string describe(const std::exception_ptr& failure) {
    try {
        std::rethrow_exception(failure);
    } catch (const std::exception& error) {
        return error.what();
    }
}

} // namespace

ChromiumWebView::ChromiumWebView(const WebEngineOptions& options, asio::any_io_executor executor)
    : options_(options), executor_(std::move(executor)), folder_(temporaryFolder(), "vesk-pdf-", uniqueName()),
      process_(engineProgram(options_.environment, options_.programFolders, folder_.path()),
               folder_.path() + "/engine.log"),
      connection_(
          std::make_shared<DevToolsConnection>(executor_, std::move(process_.commands), std::move(process_.answers))),
      deadline_(executor_) {
    connection_->start([this](const std::string& session, const std::string& method, const Json& event) {
        heard(session, method, event);
    });
}

ChromiumWebView::~ChromiumWebView() {
    *alive_ = false;
    deadline_.cancel();
    connection_->close(std::make_exception_ptr(
        WebEngineError(WebEngineError::Kind::broken, "The page was closed while it was still at work.")));
}

void ChromiumWebView::limit(std::chrono::milliseconds duration, const char* what) {
    deadline_.expires_after(duration);
    deadline_.async_wait([connection = connection_, what, duration](std::error_code cancelled) {
        if (!cancelled) connection->close(timedOut(what, duration));
    });
}

Task<DevToolsConnection::Json> ChromiumWebView::call(const char* method, Json parameters) {
    auto result = connection_->call(session_, method, std::move(parameters));
    co_return co_await std::move(result);
}

Task<void> ChromiumWebView::open(double width, double height) {
    limit(options_.patience.start, "start");
    std::exception_ptr failure;
    try {
        co_await attach();
        auto preparing = prepare(width, height);
        co_await std::move(preparing);
    } catch (...) {
        failure = typed(std::current_exception());
    }
    deadline_.cancel();
    if (failure) failToStart(describe(failure));
}

/// The engine begins with an empty page; another one would cost 50 ms (measured).
Task<void> ChromiumWebView::attach() {
    attached_ = connection_->expect();
    connection_->send({}, "Target.setAutoAttach",
                      {{"autoAttach", true}, {"waitForDebuggerOnStart", false}, {"flatten", true}});
    co_await connection_->result(attached_);
}

/// All at once, since none of it depends on what comes before.
Task<void> ChromiumWebView::prepare(double width, double height) {
    const Json frame{{"width", static_cast<int>(pixels(width))},
                     {"height", static_cast<int>(pixels(height))},
                     {"deviceScaleFactor", 1},
                     {"mobile", false}};
    const std::vector<std::pair<const char*, Json>> commands{
        {"Page.enable", Json::object()},
        {"Log.enable", Json::object()},
        {"Fetch.enable", {{"patterns", {{{"urlPattern", "*"}}}}}},
        {"Network.emulateNetworkConditions",
         {{"offline", true}, {"latency", 0}, {"downloadThroughput", 0}, {"uploadThroughput", 0}}},
        {"Emulation.setScriptExecutionDisabled", {{"value", true}}},
        {"Emulation.setEmulatedMedia", {{"media", "print"}}},
        {"Emulation.setDeviceMetricsOverride", frame},
        {"DOM.enable", Json::object()},
        {"CSS.enable", Json::object()},
        {"Page.getFrameTree", Json::object()}};
    std::vector<std::shared_ptr<DevToolsConnection::Command>> underWay;
    for (const auto& [method, parameters] : commands)
        underWay.push_back(connection_->begin(session_, method, parameters));
    Json last;
    for (const auto& command : underWay) last = co_await connection_->result(command);
    frame_ = last.at("frameTree").at("frame").at("id").get<std::string>();
}

void ChromiumWebView::heard(const std::string& session, const std::string& method, const Json& event) {
    if (method == "Fetch.requestPaused") {
        connection_->send(session, "Fetch.failRequest",
                          {{"requestId", event.at("requestId")}, {"errorReason", "Aborted"}});
        options_.log(refusalLine(event.at("request").value("url", std::string())));
    } else if (method == "Log.entryAdded") {
        if (const auto line = refusedFileLine(event.at("entry").value("text", std::string()))) options_.log(*line);
    } else if (method == "Target.attachedToTarget" && session_.empty()) {
        if (event.at("targetInfo").at("type") != "page") return;
        session_ = event.at("sessionId").get<std::string>();
        attached_->answered.resume();
    } else if (method == "Page.documentOpened") {
        documentOpened_ = documentOpened_ || event.at("frame").value("id", std::string()) == frame_;
    } else if ((method == "Page.frameScheduledNavigation" || method == "Page.frameRequestedNavigation")
               && event.at("frameId") == frame_) {
        connection_->send(session_, "Page.stopLoading", Json::object()); // in time as a rule
    } else if (method == "Page.frameNavigated" && documentOpened_ && event.at("frame").at("id") == frame_) {
        connection_->close(std::make_exception_ptr(
            WebEngineError(WebEngineError::Kind::broken, "The document sent the browser engine to another one.")));
    } else if (method == "Page.loadEventFired" && documentOpened_) {
        loaded_->answered.resume();
    } else if (method == "Inspector.targetCrashed") {
        connection_->close(std::make_exception_ptr(
            WebEngineError(WebEngineError::Kind::broken, "The browser engine ran out of memory or crashed.")));
    }
}

void ChromiumWebView::loadHtml(std::string document, WebNavigationDelegate& delegate) {
    limit(options_.patience.load, "load the document");
    asio::co_spawn(executor_, load(std::move(document)), [this, alive = alive_, &delegate](std::exception_ptr failure) {
        if (!*alive) return;
        deadline_.cancel();
        if (failure)
            delegate.didFailNavigation(typed(std::move(failure)));
        else
            delegate.didFinishNavigation();
    });
}

Task<void> ChromiumWebView::load(std::string document) {
    loaded_ = connection_->expect();
    Json content{{"frameId", frame_}, {"html", std::move(document)}};
    auto setting = call("Page.setDocumentContent", std::move(content));
    co_await std::move(setting);
    co_await connection_->result(loaded_);
}

void ChromiumWebView::runPrintOperation(WebPrintJob job, WebPrintDelegate& delegate) {
    limit(options_.patience.print, "print the document");
    asio::co_spawn(executor_, print(std::move(job)), [this, alive = alive_, &delegate](std::exception_ptr failure) {
        if (!*alive) return;
        deadline_.cancel();
        if (failure) options_.log("pdf-render failed stage=print reason=" + describe(typed(failure)));
        delegate.printOperationDidRun(failure == nullptr);
    });
}

Task<void> ChromiumWebView::print(WebPrintJob job) {
    co_await forcePaper(job);
    if (job.jobTitle && !job.jobTitle->empty()) {
        Json title{{"expression", "document.title = " + Json(*job.jobTitle).dump()}};
        auto naming = call("Runtime.evaluate", std::move(title));
        co_await std::move(naming);
    }
    const double scale = co_await fittingScale(job.paperWidth);
    Json settings{{"paperWidth", job.paperWidth / pointsPerInch},
                  {"paperHeight", job.paperHeight / pointsPerInch},
                  {"marginTop", 0},
                  {"marginBottom", 0},
                  {"marginLeft", 0},
                  {"marginRight", 0},
                  {"scale", scale},
                  {"printBackground", true},
                  {"displayHeaderFooter", false},
                  {"preferCSSPageSize", false},
                  {"transferMode", "ReturnAsStream"}};
    auto printing = call("Page.printToPDF", std::move(settings));
    const Json printed = co_await std::move(printing);
    auto saving = saveStream(printed.at("stream").get<std::string>(), std::move(job.outputPath));
    co_await std::move(saving);
}

/// A style sheet of the document may ask for paper, margins and margin boxes of its own; the job's count.
Task<void> ChromiumWebView::forcePaper(const WebPrintJob& job) {
    std::string style = paperStyle(job.paperWidth, job.paperHeight);
    Json frame{{"frameId", frame_}};
    auto making = call("CSS.createStyleSheet", std::move(frame));
    const Json sheet = co_await std::move(making);
    Json text{{"styleSheetId", sheet.at("styleSheetId")}, {"text", std::move(style)}};
    auto setting = call("CSS.setStyleSheetText", std::move(text));
    co_await std::move(setting);
}

/// The engine prints nothing below a tenth of its size.
Task<double> ChromiumWebView::fittingScale(double paperWidth) {
    auto measuring = call("Page.getLayoutMetrics", Json::object());
    const Json metrics = co_await std::move(measuring);
    const double width = metrics.at("cssContentSize").at("width").get<double>();
    co_return width <= 0 ? 1 : std::clamp(pixels(paperWidth) / width, 0.1, 1.0);
}

Task<void> ChromiumWebView::saveStream(std::string handle, std::string path) {
    GrowingDocument document(path);
    bool ended = false;
    while (!ended) {
        Json block{{"handle", handle}, {"size", 1 << 20}};
        auto reading = call("IO.read", std::move(block));
        const Json read = co_await std::move(reading);
        const auto& data = read.at("data").get_ref<const std::string&>();
        const auto bytes = read.value("base64Encoded", false) ? base64Decoded(data) : std::optional(data);
        if (!bytes)
            throw WebEngineError(WebEngineError::Kind::broken, "The browser engine returned a damaged document.");
        document.append(*bytes);
        ended = read.at("eof").get<bool>();
    }
    document.finish();
}

void ChromiumWebView::failToStart(const std::string& reason) const {
    throw WebEngineError(WebEngineError::Kind::notStarted, startFailure(folder_.path() + "/engine.log", reason));
}

} // namespace vesk
