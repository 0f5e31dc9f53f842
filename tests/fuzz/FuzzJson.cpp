// The JSON reader, the writer, the records of the request files and those of the packaged runtime. What is read is
// written as something that reads as the same.

#include "VeskShellCore/PackagedConnectors.hpp"
#include "VeskShellCore/PackagedServiceStatus.hpp"
#include "VeskShellCore/PackagedSettings.hpp"
#include "VeskShellCore/RequestFiles.hpp"
#include "VeskSupport/Json.hpp"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

template <class R> void readRecord(const vesk::JsonValue& json) {
    try {
        const R record = vesk::fromJson<R>(json);
        if (vesk::fromJson<R>(vesk::toJson(record)) != record) std::abort();
    } catch (const vesk::DecodingError&) {
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    vesk::JsonValue json;
    try {
        json = vesk::parseJson(text);
    } catch (const vesk::DecodingError&) {
        return 0;
    }
    readRecord<vesk::CapabilityContactSaveRequest>(json);
    readRecord<vesk::CapabilityMediaComposeRequest>(json);
    readRecord<vesk::PDFRenderRequest>(json);
    readRecord<vesk::PackagedConnectorDetailReport>(json);
    readRecord<vesk::PackagedServiceStatus>(json);
    readRecord<vesk::PackagedSettings>(json);
    for (const auto slashes : {vesk::SlashStyle::escaped, vesk::SlashStyle::plain}) {
        const std::string written = vesk::writeJson(json, slashes);
        if (vesk::writeJson(vesk::parseJson(written), slashes) != written) std::abort();
    }
    return 0;
}
