#pragma once

#include "VeskPlatform/PdfDocuments.hpp"

#include <memory>
#include <utility>

namespace vesk {

/// `veskPdfDocuments` in the module `pdf`, which makes an object that the caller owns.
using PdfDocumentsFactory = PdfDocuments*();

/// PDF files through the module `pdf`, which is loaded when they are first asked for. Throws AdapterModuleMissing where
/// that cannot be.
class LoadedPdfDocuments : public PdfDocuments {
public:
    /// `moduleFolder` is as in AdapterModule.
    explicit LoadedPdfDocuments(std::string moduleFolder) : moduleFolder_(std::move(moduleFolder)) {}
    std::optional<std::int64_t> pageCount(const std::string& path) override;

private:
    std::string moduleFolder_;
    std::unique_ptr<PdfDocuments> documents_;
};

} // namespace vesk
