#pragma once

#include "VeskPlatform/FileReader.hpp"
#include "VeskShellCore/CapabilityModels.hpp"
#include "VeskShellCore/ContactsModels.hpp"
#include "VeskShellCore/MediaModels.hpp"

#include <optional>
#include <string>

namespace vesk {

/// What `pdf-render-html` should render.
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

// Each reads the JSON file at `path` and returns its record verbatim. Throws PosixError for a file that cannot be read,
// DecodingError for one that does not hold the record, UsageError where a text or list that is needed is blank.

CapabilityContactSaveRequest readContactSaveRequest(FileReader& files, const std::string& path);
CapabilityMediaComposeRequest readMediaComposeRequest(FileReader& files, const std::string& path);
PDFRenderRequest readPDFRenderRequest(FileReader& files, const std::string& path);

} // namespace vesk
