#include "VeskPlatform/Apple/PDFKitDocuments.hpp"

#include "VeskPlatform/Apple/FoundationValues.hpp"

#import <PDFKit/PDFKit.h>

namespace vesk {

std::optional<std::int64_t> PDFKitDocuments::pageCount(const std::string& path) {
    PDFDocument* document = [[PDFDocument alloc] initWithURL:fileUrl(path)];
    if (document == nil) return std::nullopt;
    return static_cast<std::int64_t>(document.pageCount);
}

} // namespace vesk
