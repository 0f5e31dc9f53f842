#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vesk {

enum class LetterCase { matters, ignored };

/// `text` with each match of `pattern` replaced by `replacement`, in the language of ICU's regular expressions (where
/// `$` and `\` of a replacement have a meaning). Ill-formed UTF-8 becomes U+FFFD.
/// Throws ErrorRecord for a pattern that is none, and for a text that takes more than ICU's own bounds of memory.
std::string replacingMatches(std::string_view text, const std::string& pattern, LetterCase letterCase,
                             const std::string& replacement);

/// Whether `pattern` matches anywhere in `text`, and throws, as above.
bool containsMatch(std::string_view text, const std::string& pattern, LetterCase letterCase);

/// What the first group of the first match caught; none without a match. Throws as above, also for a pattern without a
/// group.
std::optional<std::string> firstCapture(std::string_view text, const std::string& pattern, LetterCase letterCase);

} // namespace vesk
