#include "VeskPlatform/Linux/Pdf/QpdfDocuments.hpp"

/// A PdfDocumentsFactory.
extern "C" __attribute__((visibility("default"))) vesk::PdfDocuments* veskPdfDocuments() {
    return new vesk::QpdfDocuments();
}
