#include "VeskPlatform/Linux/Pdf/QpdfDocuments.hpp"

#include <exception>
#include <qpdf/QPDF.hh>

namespace vesk {

/// A file whose tables are damaged and had to be mended is no document that was just written well.
std::optional<std::int64_t> QpdfDocuments::pageCount(const std::string& path) {
    try {
        QPDF document;
        document.setSuppressWarnings(true);
        document.setAttemptRecovery(false);
        document.processFile(path.c_str());
        return static_cast<std::int64_t>(document.getAllPages().size());
    } catch (const std::exception&) { // qpdf throws for whatever it cannot read
        return std::nullopt;
    }
}

} // namespace vesk
