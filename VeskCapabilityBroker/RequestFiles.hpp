#pragma once

#include "VeskPlatform/FileReader.hpp"
#include "VeskShellCore/CapabilityModels.hpp"
#include "VeskShellCore/ContactsModels.hpp"
#include "VeskShellCore/MediaModels.hpp"
#include "VeskShellCore/PDFModels.hpp"

#include <string>

namespace vesk {

// Each reads the JSON file at `path` and returns its record; of a PDF render request the HTML and the path are
// trimmed. Throws PosixError for a file that cannot be read,
// DecodingError for one that does not hold the record, UsageError where a text or list that is needed is blank.

CapabilityContactSaveRequest readContactSaveRequest(FileReader& files, const std::string& path);
CapabilityMediaComposeRequest readMediaComposeRequest(FileReader& files, const std::string& path);
PDFRenderRequest readPDFRenderRequest(FileReader& files, const std::string& path);

} // namespace vesk
