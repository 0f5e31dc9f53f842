#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace vesk {

/// PDF files (ISO 32000).
class PdfDocuments {
public:
    virtual ~PdfDocuments() = default;
    /// How many pages the file has; none where it cannot be opened as a PDF.
    virtual std::optional<std::int64_t> pageCount(const std::string& path) = 0;
};

} // namespace vesk
