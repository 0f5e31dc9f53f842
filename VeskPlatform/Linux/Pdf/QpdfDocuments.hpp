#pragma once

#include "VeskPlatform/PdfDocuments.hpp"

namespace vesk {

/// Through qpdf.
class QpdfDocuments : public PdfDocuments {
public:
    std::optional<std::int64_t> pageCount(const std::string& path) override;
};

} // namespace vesk
