#pragma once

#include "VeskPlatform/Bundle.hpp"
#include "VeskPlatform/Platform.hpp"
#include "VeskShellCore/PDFModels.hpp"
#include "VeskSupport/Task.hpp"

#include <optional>
#include <string>

namespace vesk::VeskPDFOperations {

/// Turns HTML into a PDF file of pages without margins; a relative `outputPath` is relative to the current directory.
/// Missing folders are made and an existing file is replaced. Throws ErrorRecord "VeskPDFOperations" 400 for blank
/// arguments and 500 for a failed print, and passes on what the file system and the engine throw.
Task<CapabilityPDFRenderResponse> renderHTML(Platform& platform, std::string html, std::string outputPath,
                                             std::optional<std::string> title, CapabilityPDFPaperSize paperSize,
                                             bool landscape, Bundle bundle);

} // namespace vesk::VeskPDFOperations
