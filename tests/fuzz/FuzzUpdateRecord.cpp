// The file of an update record. What is read can be written, and reads as the same then; what cannot be read is told in
// one of the two ways that there are.

#include "VeskShellCore/AppUpdateActivationRecordStore.hpp"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>

namespace {

using namespace vesk;

std::optional<AppUpdateActivationRecord> readOrTold(std::string_view bytes) {
    using Kind = AppUpdateActivationStoreError::Kind;
    try {
        return readActivationRecord(bytes);
    } catch (const AppUpdateActivationStoreError& error) {
        const bool isOtherVersion = error.kind() == Kind::unsupportedSchema && error.schemaVersion() != 1;
        if (!isOtherVersion && error.kind() != Kind::invalidRecord) std::abort();
        return std::nullopt;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto record = readOrTold({reinterpret_cast<const char*>(data), size});
    if (!record) return 0;
    const std::string written = activationRecordBytes(*record);
    if (readOrTold(written) != record || !written.ends_with("}\n")) std::abort();
    if (record->sourceIdentity().channel != record->targetIdentity().channel) std::abort();
    return 0;
}
