#pragma once

#include "VeskPlatform/FileReader.hpp"
#include "VeskShellCore/CapabilityModels.hpp"
#include "VeskShellCore/ContactsModels.hpp"
#include "VeskShellCore/MediaModels.hpp"
#include "VeskShellCore/PDFModels.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <string>
#include <utility>

namespace vesk {

/// A request file that asks for nothing that can be done. Domain "VeskCapabilityBroker", code 64.
class RequestError : public ErrorRecord {
public:
    explicit RequestError(std::string message) : ErrorRecord("VeskCapabilityBroker", 64, std::move(message)) {}
};

// Each reads the JSON file at `path` and returns its record; of a PDF render request the HTML and the path are trimmed.
// Throws PosixError for a file that cannot be read, DecodingError for one that does not hold the record, RequestError
// where a text or list that is needed is blank.

CapabilityContactSaveRequest readContactSaveRequest(FileReader& files, const std::string& path);
CapabilityMediaComposeRequest readMediaComposeRequest(FileReader& files, const std::string& path);
PDFRenderRequest readPDFRenderRequest(FileReader& files, const std::string& path);

} // namespace vesk
