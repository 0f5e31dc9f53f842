#include "VeskSupport/RegularExpression.hpp"

#include "VeskSupport/ErrorRecord.hpp"

#include <cstdint>
#include <limits>
#include <unicode/regex.h>

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

} // namespace

bool containsMatch(std::string_view text, const std::string& pattern, LetterCase letterCase) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::UnicodeString input = toUnicode(text);
    icu::RegexMatcher matcher(toUnicode(pattern), input, flagsOf(letterCase), status);
    require(status, pattern);
    const bool found = matcher.find(status) != 0;
    require(status, pattern);
    return found;
}

std::optional<std::string> firstCapture(std::string_view text, const std::string& pattern, LetterCase letterCase) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::UnicodeString input = toUnicode(text);
    icu::RegexMatcher matcher(toUnicode(pattern), input, flagsOf(letterCase), status);
    require(status, pattern);
    const bool found = matcher.find(status) != 0;
    require(status, pattern);
    if (!found) return std::nullopt;
    const icu::UnicodeString captured = matcher.group(1, status);
    require(status, pattern);
    std::string result;
    captured.toUTF8String(result);
    return result;
}

std::string replacingMatches(std::string_view text, const std::string& pattern, LetterCase letterCase,
                             const std::string& replacement) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::UnicodeString input = toUnicode(text);
    icu::RegexMatcher matcher(toUnicode(pattern), input, flagsOf(letterCase), status);
    require(status, pattern);
    const icu::UnicodeString replaced = matcher.replaceAll(toUnicode(replacement), status);
    require(status, pattern);
    std::string result;
    replaced.toUTF8String(result);
    return result;
}

} // namespace vesk
