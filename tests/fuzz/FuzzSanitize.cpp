// The redaction of the log. It gives what the plain expressions give, without what it skips or speeds up.

#include "VeskShellCore/ShellDebugLogger.hpp"
#include "VeskSupport/RegularExpression.hpp"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

using vesk::LetterCase;

std::string plainly(std::string text) {
    for (const std::string key :
         {"emailHint", "url", "stdoutPreview", "stderrPreview", "text", "input", "output", "prompt", "response"})
        text = vesk::replacingMatches(text, "\\b" + key + "=((\"[^\"]*\")|\\S+)", LetterCase::matters,
                                      key + "=[REDACTED]");
    text = vesk::replacingMatches(text, R"re([A-Z0-9._%+-]+@[A-Z0-9.-]+\.[A-Z]{2,})re", LetterCase::ignored, "[EMAIL]");
    text =
        vesk::replacingMatches(text, R"re(Bearer\s+[A-Za-z0-9._~+/=-]+)re", LetterCase::ignored, "Bearer [REDACTED]");
    return vesk::replacingMatches(text, R"re(/Users/[^\s"',)\]]+)re", LetterCase::matters, "[LOCAL_PATH]");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    if (vesk::ShellDebugLogger::sanitize(text) != plainly(text)) std::abort();
    return 0;
}
