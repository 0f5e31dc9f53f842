// What the sign-in service answers, what is kept of a sign-in, and base URLs. Whatever is read can be written, and
// reads as the same then; what cannot be read is told as a failure of decoding.

#include "VeskShellCore/AuthBaseURL.hpp"
#include "VeskShellCore/AuthModels.hpp"
#include "VeskShellCore/AuthSessionModels.hpp"
#include "VeskSupport/CompactJson.hpp"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>

namespace {

using namespace vesk;

template <class Record> std::optional<Record> readOrTold(std::string_view bytes) {
    try {
        return fromJson<Record>(parseJson(bytes));
    } catch (const DecodingError&) {
        return std::nullopt;
    }
}

template <class Record> void checkRecord(std::string_view bytes) {
    const auto record = readOrTold<Record>(bytes);
    if (record && readOrTold<Record>(writeCompactJson(toJson(*record))) != record) std::abort();
}

void checkBaseURL(const std::string& text) {
    if (!isURLWithScheme(text)) return;
    const std::string whole = appendingPath(text, "/v1/auth/start");
    if (!isURLWithScheme(whole) || whole.find("/v1/auth/start") == std::string::npos) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    checkRecord<VeskAuthStartResponse>(bytes);
    checkRecord<VeskAuthRedeemResponse>(bytes);
    checkRecord<VeskPendingAuthSession>(bytes);
    checkRecord<VeskAuthSignOutTransaction>(bytes);
    checkBaseURL(std::string(bytes));
    return 0;
}
