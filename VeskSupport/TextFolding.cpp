#include "VeskSupport/TextFolding.hpp"

#include "VeskSupport/Text.hpp"

#include <algorithm>
#include <unicode/locid.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

namespace vesk {
namespace {

using Normal = const icu::Normalizer2*;

/// Text that normalising cannot be done to, which ICU's own data rules out, stays as it is.
icu::UnicodeString normalized(Normal (*form)(UErrorCode&), const icu::UnicodeString& text) {
    UErrorCode status = U_ZERO_ERROR;
    const Normal normal = form(status);
    if (U_FAILURE(status)) return text;
    icu::UnicodeString result = normal->normalize(text, status);
    return U_FAILURE(status) ? text : result;
}

/// By canonical combining class (Unicode 15, section 4.3): overlays, the fixed positions of Hebrew, Arabic and Syriac
/// points, and everything that stands around a letter. Variation selectors only choose a glyph.
bool isDiacritic(UChar32 c) {
    if (c >= 0xFE00 && c <= 0xFE0F) return true;
    const int position = u_getCombiningClass(c);
    return position == 1 || (position >= 10 && position <= 36) || position >= 200;
}

icu::UnicodeString withoutDiacritics(const icu::UnicodeString& text) {
    icu::UnicodeString kept;
    for (int i = 0; i < text.length();) {
        const UChar32 c = text.char32At(i);
        if (!isDiacritic(c)) kept.append(c);
        i += U16_LENGTH(c);
    }
    return kept;
}

std::string foldedAscii(std::string_view text) { return lowercased(trimmed(text)); }

} // namespace

TextFolding::TextFolding(std::string_view localeIdentifier) {
    const std::string_view language = localeIdentifier.substr(0, localeIdentifier.find_first_of("_-@."));
    isTurkic_ = language == "tr" || language == "az";
}

std::string TextFolding::folded(std::string_view text) const {
    const auto needsIcu = [&](char c) { return static_cast<unsigned char>(c) >= 0x80 || (isTurkic_ && c == 'I'); };
    if (std::ranges::none_of(text, needsIcu)) return foldedAscii(text);
    const auto given = icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
    // Composed first, so that an I with a dot above is one letter; decomposed last, so that every mark stands alone.
    icu::UnicodeString folded = normalized(icu::Normalizer2::getNFCInstance, given);
    folded.foldCase(isTurkic_ ? U_FOLD_CASE_EXCLUDE_SPECIAL_I : U_FOLD_CASE_DEFAULT);
    folded = withoutDiacritics(normalized(icu::Normalizer2::getNFDInstance, folded));
    std::string result;
    folded.toLower(icu::Locale::getRoot()).toUTF8String(result);
    return std::string(trimmed(result));
}

} // namespace vesk
