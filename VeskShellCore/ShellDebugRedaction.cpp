#include "VeskShellCore/ShellDebugLogger.hpp"
#include "VeskSupport/RegularExpression.hpp"
#include "VeskSupport/Text.hpp"

#include <algorithm>

namespace vesk::ShellDebugLogger {
namespace {

/// One pass over the whole text. Without `hint` in the text there is no match, and then nothing is compiled: most lines
/// hold none of the hints, and the first expression of a process costs it a millisecond.
struct Pass {
    std::string hint;
    std::string pattern;
    LetterCase letterCase;
    std::string replacement;
};

constexpr std::string_view privateKeys[] = {"emailHint", "url",    "stdoutPreview", "stderrPreview", "text",
                                            "input",     "output", "prompt",        "response"};

Pass keyPass(std::string_view key) {
    const std::string name(key);
    return {.hint = name + "=",
            .pattern = "\\b" + name + R"re(=(("[^"]*")|\S+))re",
            .letterCase = LetterCase::matters,
            .replacement = name + "=[REDACTED]"};
}

/// The address proper is `[A-Z0-9._%+-]+@[A-Z0-9.-]+\.[A-Z]{2,}`. What stands before it lets a match begin only where a
/// run of its characters begins, or where the last match ended. The leftmost match begins there anyway; without it, a
/// long run would be searched from each of its characters.
Pass emailPass() {
    return {.hint = "@",
            .pattern = R"re((?:\G|(?<![A-Z0-9._%+-]))[A-Z0-9._%+-]+@[A-Z0-9.-]+\.[A-Z]{2,})re",
            .letterCase = LetterCase::ignored,
            .replacement = "[EMAIL]"};
}

Pass bearerPass() {
    return {.hint = "bearer",
            .pattern = R"re(Bearer\s+[A-Za-z0-9._~+/=-]+)re",
            .letterCase = LetterCase::ignored,
            .replacement = "Bearer [REDACTED]"};
}

Pass localPathPass() {
    return {.hint = "/Users/",
            .pattern = R"re(/Users/[^\s"',)\]]+)re",
            .letterCase = LetterCase::matters,
            .replacement = "[LOCAL_PATH]"};
}

char asciiLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

/// No character outside ASCII folds to a letter of a hint.
bool holdsHint(std::string_view text, const Pass& pass) {
    if (pass.letterCase == LetterCase::matters) return text.find(pass.hint) != std::string_view::npos;
    return std::search(text.begin(), text.end(), pass.hint.begin(), pass.hint.end(),
                       [](char a, char b) { return asciiLower(a) == b; })
           != text.end();
}

void redact(std::string& text, const Pass& pass) {
    if (holdsHint(text, pass)) text = replacingMatches(text, pass.pattern, pass.letterCase, pass.replacement);
}

} // namespace

std::string sanitize(std::string_view text) {
    std::string result = repairedUtf8(text);
    for (const std::string_view key : privateKeys) redact(result, keyPass(key));
    redact(result, emailPass());
    redact(result, bearerPass());
    redact(result, localPathPass());
    return result;
}

} // namespace vesk::ShellDebugLogger
