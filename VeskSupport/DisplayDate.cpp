#include "VeskSupport/DisplayDate.hpp"

#include <memory>
#include <unicode/datefmt.h>
#include <unicode/timezone.h>

namespace vesk {
namespace {

icu::DateFormat* formatFor(DisplayTime time, const icu::Locale& locale) {
    switch (time) {
    case DisplayTime::none: return icu::DateFormat::createDateInstance(icu::DateFormat::kMedium, locale);
    case DisplayTime::shortStyle:
        return icu::DateFormat::createDateTimeInstance(icu::DateFormat::kMedium, icu::DateFormat::kShort, locale);
    case DisplayTime::full:
        return icu::DateFormat::createDateTimeInstance(icu::DateFormat::kFull, icu::DateFormat::kFull, locale);
    }
    return nullptr;
}

} // namespace

std::string displayDate(Instant instant, DisplayTime time, const std::string& locale, const std::string& timeZone) {
    const std::unique_ptr<icu::DateFormat> format(formatFor(time, icu::Locale::createFromName(locale.c_str())));
    std::string result;
    if (format == nullptr) return result;
    format->adoptTimeZone(icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(timeZone)));
    icu::UnicodeString text;
    format->format(static_cast<double>(instant.time_since_epoch().count()), text);
    return text.toUTF8String(result);
}

} // namespace vesk
