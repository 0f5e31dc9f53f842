#include "VeskSupport/RegularExpression.hpp"

#include "VeskSupport/ErrorRecord.hpp"

#include <cstdint>
#include <limits>
#include <unicode/regex.h>
#include <utility>

namespace vesk {
namespace {

void require(UErrorCode status, const std::string& pattern) {
    if (U_FAILURE(status))
        throw ErrorRecord("VeskRegularExpression", status,
                          "The expression \"" + pattern + "\" failed: " + u_errorName(status) + ".");
}

icu::UnicodeString toUnicode(std::string_view text) {
    if (text.size() > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max()))
        throw ErrorRecord("VeskRegularExpression", U_INDEX_OUTOFBOUNDS_ERROR, "The text is too long to be searched.");
    return icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())));
}

std::uint32_t flagsOf(LetterCase letterCase) {
    return letterCase == LetterCase::ignored ? std::uint32_t{UREGEX_CASE_INSENSITIVE} : 0U;
}

std::string toUtf8(const icu::UnicodeString& text) {
    std::string result;
    text.toUTF8String(result);
    return result;
}

/// One expression over one text.
class Search {
public:
    Search(std::string_view text, std::string pattern, LetterCase letterCase)
        : pattern_(std::move(pattern)), text_(toUnicode(text)),
          matcher_(toUnicode(pattern_), text_, flagsOf(letterCase), status_) {
        require(status_, pattern_);
    }

    bool find() {
        const bool found = matcher_.find(status_) != 0;
        require(status_, pattern_);
        return found;
    }
    std::string group(std::int32_t number) {
        const icu::UnicodeString captured = matcher_.group(number, status_);
        require(status_, pattern_);
        return toUtf8(captured);
    }
    std::string replaceAll(const std::string& replacement) {
        const icu::UnicodeString replaced = matcher_.replaceAll(toUnicode(replacement), status_);
        require(status_, pattern_);
        return toUtf8(replaced);
    }

private:
    UErrorCode status_ = U_ZERO_ERROR;
    std::string pattern_;
    icu::UnicodeString text_; // the matcher keeps a reference to it
    icu::RegexMatcher matcher_;
};

} // namespace

bool containsMatch(std::string_view text, const std::string& pattern, LetterCase letterCase) {
    return Search(text, pattern, letterCase).find();
}

std::optional<std::string> firstCapture(std::string_view text, const std::string& pattern, LetterCase letterCase) {
    Search search(text, pattern, letterCase);
    if (!search.find()) return std::nullopt;
    return search.group(1);
}

std::string replacingMatches(std::string_view text, const std::string& pattern, LetterCase letterCase,
                             const std::string& replacement) {
    return Search(text, pattern, letterCase).replaceAll(replacement);
}

} // namespace vesk
