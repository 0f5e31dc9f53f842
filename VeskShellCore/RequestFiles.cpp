#include "VeskShellCore/RequestFiles.hpp"

#include "VeskSupport/Text.hpp"

namespace vesk {
namespace {

template <Record R> R readRequest(FileReader& files, const std::string& path) {
    const JsonLimits limits;
    return fromJson<R>(parseJson(files.contents(path, limits.bytes), limits));
}

void require(bool condition, const char* message) {
    if (!condition) throw RequestError(message);
}

} // namespace

CapabilityContactSaveRequest readContactSaveRequest(FileReader& files, const std::string& path) {
    auto request = readRequest<CapabilityContactSaveRequest>(files, path);
    require(!isBlank(request.name), "Contact save request is missing a name.");
    return request;
}

CapabilityMediaComposeRequest readMediaComposeRequest(FileReader& files, const std::string& path) {
    auto request = readRequest<CapabilityMediaComposeRequest>(files, path);
    require(!request.inputs.empty(), "Media compose request is missing inputs.");
    require(!isBlank(request.outputPath), "Media compose request is missing an output path.");
    return request;
}

PDFRenderRequest readPDFRenderRequest(FileReader& files, const std::string& path) {
    auto request = readRequest<PDFRenderRequest>(files, path);
    request.html = trimmed(request.html);
    request.outputPath = trimmed(request.outputPath);
    require(!request.html.empty(), "PDF render request is missing HTML content.");
    require(!request.outputPath.empty(), "PDF render request is missing an output path.");
    return request;
}

} // namespace vesk
