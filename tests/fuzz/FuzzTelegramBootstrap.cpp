// The text of a Telegram setup step. Whatever it says, what is taken from it is not blank, not "unknown" and not
// double.

#include "VeskShellCore/TelegramBootstrapExtraction.hpp"
#include "VeskSupport/Text.hpp"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <set>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto found = vesk::TelegramBootstrapExtraction::parse(text);
    if (!found) return 0;
    if (found->isEmpty()) std::abort();
    std::set<std::string> seen;
    for (const std::string& id : found->allowedChatIDs)
        if (vesk::isBlank(id) || id == "unknown" || !seen.insert(id).second) std::abort();
    return 0;
}
