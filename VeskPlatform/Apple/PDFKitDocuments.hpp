#pragma once

#include "VeskPlatform/PdfDocuments.hpp"

namespace vesk {

/// PDF files, opened with PDFKit.
class PDFKitDocuments : public PdfDocuments {
public:
    std::optional<std::int64_t> pageCount(const std::string& path) override;
};

} // namespace vesk
