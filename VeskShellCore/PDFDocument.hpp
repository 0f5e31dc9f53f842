#pragma once

#include "VeskShellCore/CapabilityModels.hpp"

#include <optional>
#include <string>
#include <string_view>

// How a piece of HTML becomes the document that is printed.

namespace vesk {

/// In points (1/72 inch).
struct PDFPageSize {
    double width = 0, height = 0;

    bool operator==(const PDFPageSize&) const = default;
};

PDFPageSize pageSize(CapabilityPDFPaperSize paper, bool landscape);

/// Whether `html` names its own root, body or document type, in any case.
bool looksLikeFullHTMLDocument(std::string_view html);

/// The rule of CSS Paged Media that sets the paper, without margins.
std::string pageCSSRule(CapabilityPDFPaperSize paper, bool landscape);

/// A full document as it is; any other piece of HTML within a document that has the title, the paper and print rules.
/// Without a title it is called "Vesk PDF".
std::string normalizedHTMLDocument(std::string_view html, const std::optional<std::string>& title,
                                   CapabilityPDFPaperSize paper, bool landscape);

} // namespace vesk
