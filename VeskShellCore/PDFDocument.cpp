#include "VeskShellCore/PDFDocument.hpp"

#include "VeskSupport/Text.hpp"

namespace vesk {
namespace {

struct Paper {
    PDFPageSize portrait;
    std::string_view name;
};

Paper paperOf(CapabilityPDFPaperSize size) {
    if (size == CapabilityPDFPaperSize::a4) return {{595, 842}, "A4"};
    return {{612, 792}, "Letter"};
}

std::string escapedForHTML(std::string_view text) {
    std::string escaped;
    for (const char character : text) {
        switch (character) {
        case '&': escaped += "&amp;"; break;
        case '<': escaped += "&lt;"; break;
        case '>': escaped += "&gt;"; break;
        case '"': escaped += "&quot;"; break;
        default: escaped += character;
        }
    }
    return escaped;
}

constexpr std::string_view beforeTitle = R"(<!DOCTYPE html>
<html lang="en">
  <head>
    <meta charset="utf-8" />
    <meta name="viewport" content="width=device-width, initial-scale=1" />
    <title>)";

constexpr std::string_view beforeRule = R"(</title>
    <style>
      )";

constexpr std::string_view beforeBody = R"(
      html, body {
        margin: 0;
        padding: 0;
      }
      * {
        -webkit-print-color-adjust: exact;
        print-color-adjust: exact;
        box-sizing: border-box;
      }
    </style>
  </head>
  <body>
)";

constexpr std::string_view afterBody = R"(
  </body>
</html>)";

} // namespace

PDFPageSize pageSize(CapabilityPDFPaperSize paper, bool landscape) {
    const PDFPageSize size = paperOf(paper).portrait;
    return landscape ? PDFPageSize{size.height, size.width} : size;
}

bool looksLikeFullHTMLDocument(std::string_view html) {
    const std::string lower = lowercased(html);
    const auto has = [&](std::string_view tag) { return lower.find(tag) != std::string::npos; };
    return has("<html") || has("<body") || has("<!doctype");
}

std::string pageCSSRule(CapabilityPDFPaperSize paper, bool landscape) {
    return "@page { size: " + std::string(paperOf(paper).name) + (landscape ? " landscape" : " portrait")
           + "; margin: 0; }";
}

std::string normalizedHTMLDocument(std::string_view html, const std::optional<std::string>& title,
                                   CapabilityPDFPaperSize paper, bool landscape) {
    if (looksLikeFullHTMLDocument(html)) return std::string(html);
    std::string document(beforeTitle);
    document += escapedForHTML(trimmedOrAbsent(title).value_or("Vesk PDF"));
    document += beforeRule;
    document += pageCSSRule(paper, landscape);
    document += beforeBody;
    document += html;
    document += afterBody;
    return document;
}

} // namespace vesk
