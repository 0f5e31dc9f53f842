#include "VeskPlatform/Linux/Pdf/QpdfDocuments.hpp"

#include <memory>
#include <qpdf/qpdf-c.h>

namespace vesk {
namespace {

struct DocumentDeleter {
    /// An error that nobody has asked for would be written to standard error.
    void operator()(qpdf_data document) const {
        if (qpdf_has_error(document) == QPDF_TRUE) (void)qpdf_get_error(document);
        qpdf_cleanup(&document);
    }
};

} // namespace

/// A file whose tables are damaged and had to be mended is no document that was just written well.
std::optional<std::int64_t> QpdfDocuments::pageCount(const std::string& path) {
    const std::unique_ptr<_qpdf_data, DocumentDeleter> document(qpdf_init());
    qpdf_set_suppress_warnings(document.get(), QPDF_TRUE);
    qpdf_silence_errors(document.get());
    qpdf_set_attempt_recovery(document.get(), QPDF_FALSE);
    if ((qpdf_read(document.get(), path.c_str(), nullptr) & QPDF_ERRORS) != 0) return std::nullopt;
    const int pages = qpdf_get_num_pages(document.get());
    return pages < 0 ? std::nullopt : std::optional<std::int64_t>(pages);
}

} // namespace vesk
