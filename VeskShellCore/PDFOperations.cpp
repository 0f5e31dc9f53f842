#include "VeskShellCore/PDFOperations.hpp"

#include "VeskPlatform/FileManager.hpp"
#include "VeskPlatform/PdfDocuments.hpp"
#include "VeskPlatform/Sleeper.hpp"
#include "VeskPlatform/WebView.hpp"
#include "VeskShellCore/BundleResponse.hpp"
#include "VeskShellCore/OutputFile.hpp"
#include "VeskShellCore/PDFDocument.hpp"
#include "VeskShellCore/PDFNavigationDelegate.hpp"
#include "VeskSupport/ErrorRecord.hpp"
#include "VeskSupport/FilePath.hpp"
#include "VeskSupport/Text.hpp"

#include <chrono>
#include <utility>

namespace vesk::VeskPDFOperations {
namespace {

/// What layout still does after the load event.
constexpr std::chrono::milliseconds settlingTime{50};

ErrorRecord pdfError(std::string message, std::int64_t code) { return {"VeskPDFOperations", code, std::move(message)}; }

std::string outputFile(FileManager& files, std::string_view outputPath) {
    std::string path = outputFilePath(files, outputPath);
    files.createDirectory(parentFolder(path));
    return path;
}

Task<void> renderPaginatedPDF(WebView& view, WebPrintJob job) {
    Continuation printed;
    PDFPrintDelegate delegate([&](bool success) {
        printed.resume(success ? nullptr : std::make_exception_ptr(pdfError("The PDF print operation failed.", 500)));
    });
    view.runPrintOperation(std::move(job), delegate);
    co_await printed.wait();
}

/// The file at the output path is removed where it is no document.
std::int64_t countedPages(Platform& platform, const std::string& path) {
    const auto pages = platform.pdfDocuments().pageCount(path);
    if (pages && *pages >= 1) return *pages;
    try {
        platform.fileManager().removeFile(path);
    } catch (const ErrorRecord&) { // the document is the failure to tell of
    }
    throw pdfError("The rendered PDF could not be opened.", 500);
}

std::string renderDetail(std::int64_t pages) {
    return pages == 1 ? "Rendered HTML into a PDF." : "Rendered HTML into a " + std::to_string(pages) + "-page PDF.";
}

/// The view, which is what there is to clean up, goes with this task, whether it ends well or not.
Task<void> printDocument(Platform& platform, std::string document, WebPrintJob job) {
    PDFNavigationDelegate navigation; // outlives the view
    auto opening = platform.webEngine().makeView(job.paperWidth, job.paperHeight);
    const std::unique_ptr<WebView> view = co_await std::move(opening);
    view->loadHtml(std::move(document), navigation);
    co_await navigation.waitForLoad();
    co_await platform.sleeper().sleep(settlingTime);
    FileManager& files = platform.fileManager();
    if (files.fileExists(job.outputPath)) files.removeFile(job.outputPath);
    auto printing = renderPaginatedPDF(*view, std::move(job));
    co_await std::move(printing);
}

} // namespace

Task<CapabilityPDFRenderResponse> renderHTML(Platform& platform, std::string html, std::string outputPath,
                                             std::optional<std::string> title, CapabilityPDFPaperSize paperSize,
                                             bool landscape, Bundle bundle) {
    const std::string_view content = trimmed(html), target = trimmed(outputPath);
    if (content.empty()) throw pdfError("HTML content is required.", 400);
    if (target.empty()) throw pdfError("PDF output path is required.", 400);
    const std::string path = outputFile(platform.fileManager(), target);

    const PDFPageSize size = pageSize(paperSize, landscape);
    WebPrintJob job{.paperWidth = size.width, .paperHeight = size.height, .landscape = landscape, .outputPath = path};
    if (title) job.jobTitle = std::string(trimmed(*title));
    auto printing =
        printDocument(platform, normalizedHTMLDocument(content, title, paperSize, landscape), std::move(job));
    co_await std::move(printing);

    auto response = responseOf<CapabilityPDFRenderResponse>(bundle);
    response.pageCount = countedPages(platform, path);
    response.filePath = path;
    response.fileName = lastPathComponent(path);
    response.mimeType = "application/pdf";
    response.paperSize = paperSize;
    response.landscape = landscape;
    response.detail = renderDetail(response.pageCount);
    co_return response;
}

} // namespace vesk::VeskPDFOperations
