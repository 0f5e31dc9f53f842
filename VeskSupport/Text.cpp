#include "VeskSupport/Text.hpp"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <unicode/brkiter.h>
#include <unicode/coll.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utext.h>
#include <unicode/utf8.h>

namespace vesk {
namespace {

bool isAscii(std::string_view text) {
    return std::none_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
}

bool isWhiteSpace(UChar32 c) {
    if (c < 0x80) return c == ' ' || (c >= 0x09 && c <= 0x0D);
    return c == 0x85 || (c >= 0 && (U_GET_GC_MASK(c) & U_GC_Z_MASK) != 0);
}

bool isLineEnd(UChar32 c) { return (c >= 0x0A && c <= 0x0D) || c == 0x85 || c == 0x2028 || c == 0x2029; }

bool isAlphanumeric(UChar32 c) { return c >= 0 && (U_GET_GC_MASK(c) & (U_GC_L_MASK | U_GC_M_MASK | U_GC_N_MASK)) != 0; }

bool isNumber(UChar32 c) {
    if (c < 0x80) return c >= '0' && c <= '9';
    return (U_GET_GC_MASK(c) & U_GC_N_MASK) != 0;
}

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion" // inside ICU's macro
/// The code point at `position`, which moves behind it; negative for an ill-formed sequence.
UChar32 nextCodePoint(std::string_view text, std::size_t& position) {
    UChar32 c = 0;
    U8_NEXT(text.data(), position, text.size(), c);
    return c;
}
#pragma GCC diagnostic pop

/// The code point that ends `text`, which loses it; negative for an ill-formed sequence.
UChar32 takeLastCodePoint(std::string_view& text) {
    std::size_t start = text.size() - 1;
    for (int steps = 0; steps < 3 && start > 0 && U8_IS_TRAIL(text[start]); ++steps) --start;
    std::size_t end = start;
    const UChar32 c = nextCodePoint(text, end);
    const bool whole = end == text.size();
    text = text.substr(0, whole ? start : text.size() - 1);
    return whole ? c : -1;
}

/// The longest runs of characters that `belongs` takes, in order.
template <class Predicate> std::vector<std::string> runsOf(std::string_view text, Predicate belongs) {
    std::vector<std::string> runs;
    bool inside = false;
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t start = i;
        if (!belongs(nextCodePoint(text, i))) {
            inside = false;
            continue;
        }
        if (!inside) runs.emplace_back();
        inside = true;
        runs.back().append(text, start, i - start);
    }
    return runs;
}

icu::Collator* collator(void* p) { return static_cast<icu::Collator*>(p); }

/// Whether each byte is a character: only a carriage return before a line feed makes two ASCII characters one.
bool hasOnlySimpleCharacters(std::string_view text) {
    return isAscii(text) && text.find('\r') == std::string_view::npos;
}

/// Walks over the grapheme clusters of a text.
class CharacterWalk {
public:
    struct Way {
        std::size_t taken = 0, bytes = 0;
    };

    explicit CharacterWalk(std::string_view text) : text_(text) {}

    /// How far `count` steps lead, or as many as there are.
    Way steps(std::size_t count) const {
        UErrorCode status = U_ZERO_ERROR;
        UText source = UTEXT_INITIALIZER;
        utext_openUTF8(&source, text_.data(), static_cast<std::int64_t>(text_.size()), &status);
        const std::unique_ptr<icu::BreakIterator> boundaries(
            icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
        if (U_SUCCESS(status)) boundaries->setText(&source, status);
        Way way;
        while (U_SUCCESS(status) && way.taken < count) {
            const std::int32_t end = boundaries->next();
            if (end == icu::BreakIterator::DONE) break;
            ++way.taken;
            way.bytes = static_cast<std::size_t>(end);
        }
        utext_close(&source);
        return way;
    }

private:
    std::string_view text_;
};

icu::StringPiece piece(std::string_view text) { return {text.data(), static_cast<std::int32_t>(text.size())}; }

} // namespace

std::string_view trimmed(std::string_view text) {
    for (std::size_t next = 0; !text.empty(); next = 0) {
        if (!isWhiteSpace(nextCodePoint(text, next))) break;
        text.remove_prefix(next);
    }
    for (std::string_view shorter = text; !text.empty(); text = shorter)
        if (!isWhiteSpace(takeLastCodePoint(shorter))) break;
    return text;
}

bool isBlank(std::string_view text) { return trimmed(text).empty(); }

std::optional<std::string> trimmedOrAbsent(const std::optional<std::string>& text) {
    const std::string_view kept = text ? trimmed(*text) : std::string_view{};
    return kept.empty() ? std::nullopt : std::optional<std::string>(kept);
}

bool matchesDigitPattern(std::string_view text, std::string_view pattern) {
    std::size_t position = 0;
    for (const char expected : pattern) {
        if (position == text.size()) return false;
        const UChar32 c = nextCodePoint(text, position);
        if (expected == '0' ? c < 0 || u_charType(c) != U_DECIMAL_DIGIT_NUMBER : c != expected) return false;
    }
    return position == text.size();
}

std::string lowercased(std::string_view text) {
    if (isAscii(text)) {
        std::string result(text);
        for (char& c : result)
            if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
        return result;
    }
    std::string result;
    icu::UnicodeString::fromUTF8(piece(text)).toLower(icu::Locale::getRoot()).toUTF8String(result);
    return result;
}

std::string repairedUtf8(std::string_view text) {
    if (isAscii(text)) return std::string(text);
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t start = i;
        if (nextCodePoint(text, i) < 0)
            result += "\xEF\xBF\xBD";
        else
            result.append(text, start, i - start);
    }
    return result;
}

bool isWellFormedUtf8(std::string_view text) {
    if (isAscii(text)) return true;
    for (std::size_t i = 0; i < text.size();)
        if (nextCodePoint(text, i) < 0) return false;
    return true;
}

std::vector<std::string> alphanumericRuns(std::string_view text) { return runsOf(text, isAlphanumeric); }

std::vector<std::string> words(std::string_view text) {
    return runsOf(text, [](UChar32 c) { return !isWhiteSpace(c); });
}

std::string digitsOnly(std::string_view text) { return joined(runsOf(text, isNumber), ""); }

std::string joined(const std::vector<std::string>& pieces, std::string_view separator) {
    std::string result;
    for (const std::string& part : pieces) {
        if (&part != pieces.data()) result += separator;
        result += part;
    }
    return result;
}

std::vector<std::string> split(std::string_view text, char separator) {
    std::vector<std::string> pieces;
    for (std::size_t start = 0;;) {
        const std::size_t end = text.find(separator, start);
        pieces.emplace_back(text.substr(start, end - start));
        if (end == std::string_view::npos) return pieces;
        start = end + 1;
    }
}

std::vector<std::string_view> lines(std::string_view text) {
    std::vector<std::string_view> pieces;
    std::size_t start = 0;
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t end = i;
        if (!isLineEnd(nextCodePoint(text, i))) continue;
        if (end > start) pieces.push_back(text.substr(start, end - start));
        start = i;
    }
    if (start < text.size()) pieces.push_back(text.substr(start));
    return pieces;
}

std::size_t characterCount(std::string_view text) {
    if (hasOnlySimpleCharacters(text)) return text.size();
    return CharacterWalk(text).steps(SIZE_MAX).taken;
}

std::string_view firstCharacters(std::string_view text, std::size_t count) {
    if (text.size() <= count || hasOnlySimpleCharacters(text.substr(0, count + 1))) return text.substr(0, count);
    return text.substr(0, CharacterWalk(text).steps(count).bytes);
}

CaseInsensitiveCollator::CaseInsensitiveCollator(const std::string& localeIdentifier) : collator_(nullptr) {
    UErrorCode status = U_ZERO_ERROR;
    // The order of the POSIX locale is that of bytes, with case as its first difference.
    const bool isPosix = localeIdentifier.ends_with("_POSIX");
    const auto locale = isPosix ? icu::Locale::getRoot() : icu::Locale::createFromName(localeIdentifier.c_str());
    icu::Collator* made = icu::Collator::createInstance(locale, status);
    if (U_FAILURE(status)) {
        delete made;
        status = U_ZERO_ERROR;
        made = icu::Collator::createInstance(icu::Locale::getRoot(), status);
    }
    if (made != nullptr) made->setStrength(icu::Collator::SECONDARY);
    collator_ = made;
}

CaseInsensitiveCollator::~CaseInsensitiveCollator() { delete collator(collator_); }

int CaseInsensitiveCollator::compare(std::string_view a, std::string_view b) const {
    if (collator_ == nullptr) return lowercased(a).compare(lowercased(b));
    UErrorCode status = U_ZERO_ERROR;
    return collator(collator_)->compareUTF8(piece(a), piece(b), status);
}

} // namespace vesk
