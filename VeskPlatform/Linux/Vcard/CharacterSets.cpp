#include "VeskPlatform/Linux/Vcard/CharacterSets.hpp"

#include "VeskPlatform/Linux/Vcard/PhysicalLines.hpp"

#include <memory>
#include <unicode/ucnv.h>
#include <unicode/ucnv_cb.h>
#include <unicode/unistr.h>

namespace vesk::vcard {
namespace {

bool isPlain(std::string_view characterSet) {
    return characterSet.empty() || isSameWord(characterSet, "UTF-8") || isSameWord(characterSet, "UTF8")
           || isSameWord(characterSet, "US-ASCII") || isSameWord(characterSet, "ASCII");
}

struct ConverterCloser {
    void operator()(UConverter* converter) const { ucnv_close(converter); }
};

/// Bytes that mean nothing become U+FFFD; left alone, ICU has U+001A for some of them.
void replaceWithFffd(const void*, UConverterToUnicodeArgs* arguments, const char*, std::int32_t,
                     UConverterCallbackReason reason, UErrorCode* status) {
    if (reason > UCNV_IRREGULAR) return;
    constexpr char16_t replacement = 0xFFFD;
    *status = U_ZERO_ERROR;
    ucnv_cbToUWriteUChars(arguments, &replacement, 1, 0, status);
}

} // namespace

std::string utf8Of(std::string_view bytes, std::string_view characterSet) {
    if (bytes.empty() || isPlain(characterSet)) return std::string(bytes);
    UErrorCode status = U_ZERO_ERROR;
    const std::string name(characterSet);
    const std::unique_ptr<UConverter, ConverterCloser> converter(ucnv_open(name.c_str(), &status));
    if (U_FAILURE(status)) return std::string(bytes);
    ucnv_setToUCallBack(converter.get(), replaceWithFffd, nullptr, nullptr, nullptr, &status);
    const icu::UnicodeString text(bytes.data(), static_cast<std::int32_t>(bytes.size()), converter.get(), status);
    if (U_FAILURE(status)) return std::string(bytes);
    std::string result;
    return text.toUTF8String(result);
}

} // namespace vesk::vcard
