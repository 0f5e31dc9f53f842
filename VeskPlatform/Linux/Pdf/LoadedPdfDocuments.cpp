#include "VeskPlatform/Linux/Pdf/LoadedPdfDocuments.hpp"

#include "VeskPlatform/Linux/AdapterModule.hpp"

namespace vesk {

std::optional<std::int64_t> LoadedPdfDocuments::pageCount(const std::string& path) {
    if (!documents_) {
        const AdapterModule module(moduleFolder_, "pdf", "libqpdf29");
        documents_.reset(module.function<PdfDocumentsFactory>("veskPdfDocuments")());
    }
    return documents_->pageCount(path);
}

} // namespace vesk
