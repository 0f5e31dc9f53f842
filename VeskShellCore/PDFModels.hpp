#pragma once

#include "VeskShellCore/CapabilityModels.hpp"

#include <cstdint>
#include <optional>
#include <string>

namespace vesk {

struct PDFRenderRequest {
    std::string html;
    std::string outputPath;
    std::optional<std::string> title;
    CapabilityPDFPaperSize paperSize = CapabilityPDFPaperSize::letter;
    bool landscape = false;

    bool operator==(const PDFRenderRequest&) const = default;
};

template <>
inline constexpr auto recordTable<PDFRenderRequest> =
    recordFields(required("html", &PDFRenderRequest::html), required("outputPath", &PDFRenderRequest::outputPath),
                 optional("title", &PDFRenderRequest::title), defaulted("paperSize", &PDFRenderRequest::paperSize),
                 defaulted("landscape", &PDFRenderRequest::landscape));

struct CapabilityPDFRenderResponse {
    std::string brokerPath;
    std::optional<std::string> bundlePath;
    std::string filePath;
    std::string fileName;
    std::string mimeType;
    CapabilityPDFPaperSize paperSize{};
    bool landscape = false;
    std::int64_t pageCount = 0;
    std::string detail;

    bool operator==(const CapabilityPDFRenderResponse&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityPDFRenderResponse> =
    recordFields(required("brokerPath", &CapabilityPDFRenderResponse::brokerPath),
                 optional("bundlePath", &CapabilityPDFRenderResponse::bundlePath),
                 required("filePath", &CapabilityPDFRenderResponse::filePath),
                 required("fileName", &CapabilityPDFRenderResponse::fileName),
                 required("mimeType", &CapabilityPDFRenderResponse::mimeType),
                 required("paperSize", &CapabilityPDFRenderResponse::paperSize),
                 required("landscape", &CapabilityPDFRenderResponse::landscape),
                 required("pageCount", &CapabilityPDFRenderResponse::pageCount),
                 required("detail", &CapabilityPDFRenderResponse::detail));

} // namespace vesk
