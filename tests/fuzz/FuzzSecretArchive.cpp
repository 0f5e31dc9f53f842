// Archives of secrets. What is read is valid, can be written, and reads as the same then; what cannot be read is told
// in one of the two ways that there are.

#include "VeskPlatform/Linux/PropertyList.hpp"
#include "VeskShellCore/ReleaseStateKeychain.hpp"
#include "VeskSupport/Json.hpp"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>

namespace {

using namespace vesk;

std::optional<ReleaseStateSecretArchive> readOrTold(LibplistCoder& coder, const std::string& bytes) {
    try {
        return ReleaseStateKeychain::decode(coder, bytes);
    } catch (const DecodingError&) {
        return std::nullopt;
    } catch (const ReleaseStateKeychainError& error) {
        if (error.kind() != ReleaseStateKeychainError::Kind::invalidArchive) std::abort();
        return std::nullopt;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    LibplistCoder coder;
    const auto archive = readOrTold(coder, {reinterpret_cast<const char*>(data), size});
    if (!archive) return 0;
    if (readOrTold(coder, ReleaseStateKeychain::encode(coder, *archive)) != archive) std::abort();
    return 0;
}
