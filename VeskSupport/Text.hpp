#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vesk {

// Text is UTF-8 in `std::string`. White space means the Unicode categories Z*, U+0009 to U+000D and U+0085.
// ASCII takes a path of its own everywhere: ICU's first use costs up to a millisecond of a process that lives for two.

/// `text` without white space at both ends.
std::string_view trimmed(std::string_view text);

/// Whether trimming leaves nothing.
bool isBlank(std::string_view text);

/// `text` trimmed, none where that leaves nothing.
std::optional<std::string> trimmedOrAbsent(const std::optional<std::string>& text);

/// Whether `text` is `pattern` with a decimal digit of any script (category Nd) in the place of each '0'.
bool matchesDigitPattern(std::string_view text, std::string_view pattern);

/// Lower case of every locale (Unicode's own mapping, not Turkish or Lithuanian).
std::string lowercased(std::string_view text);

/// `text` with each ill-formed UTF-8 sequence as U+FFFD, one per maximal subpart (Unicode 15, section 3.9).
std::string repairedUtf8(std::string_view text);

/// Whether `text` is UTF-8 throughout.
bool isWellFormedUtf8(std::string_view text);

/// The runs of alphanumeric characters (categories L*, M*, N*) of `text`, in order.
std::vector<std::string> alphanumericRuns(std::string_view text);

/// The pieces of `text` between runs of white space, in order; none of them is empty.
std::vector<std::string> words(std::string_view text);

/// The characters of `text` that are numbers in any script (categories N*), in order.
std::string digitsOnly(std::string_view text);

/// Joins `pieces` with `separator` between them.
std::string joined(const std::vector<std::string>& pieces, std::string_view separator);

/// Splits at each `separator`; an empty piece counts as a piece, so the result is never empty.
std::vector<std::string> split(std::string_view text, char separator);

/// The pieces of `text` between line ends (U+000A to U+000D, U+0085, U+2028, U+2029), without empty ones.
std::vector<std::string_view> lines(std::string_view text);

/// The characters of `text` as people count them: its extended grapheme clusters (Unicode Standard Annex 29).
std::size_t characterCount(std::string_view text);

/// The first `count` of these characters of well-formed `text`, or all of it.
std::string_view firstCharacters(std::string_view text, std::size_t count);

/// Case-insensitive order of a locale (an ICU identifier such as "de_DE"; unknown ones mean the root order).
class CaseInsensitiveCollator {
public:
    explicit CaseInsensitiveCollator(const std::string& localeIdentifier);
    ~CaseInsensitiveCollator();
    CaseInsensitiveCollator(const CaseInsensitiveCollator&) = delete;
    CaseInsensitiveCollator& operator=(const CaseInsensitiveCollator&) = delete;

    /// Negative, zero or positive, as `a` sorts before, with or after `b`.
    int compare(std::string_view a, std::string_view b) const;

private:
    void* collator_;
};

} // namespace vesk
