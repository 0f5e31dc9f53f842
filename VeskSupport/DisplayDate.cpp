#include "VeskSupport/DisplayDate.hpp"

#include <map>
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

struct DateDisplay::Formats {
    std::map<DisplayTime, std::unique_ptr<icu::DateFormat>> byTime;
};

DateDisplay::DateDisplay(std::string locale, std::string timeZone)
    : locale_(std::move(locale)), timeZone_(std::move(timeZone)), formats_(std::make_unique<Formats>()) {}
DateDisplay::DateDisplay(DateDisplay&&) noexcept = default;
DateDisplay& DateDisplay::operator=(DateDisplay&&) noexcept = default;
DateDisplay::~DateDisplay() = default;

std::string DateDisplay::text(Instant instant, DisplayTime time) const {
    auto& format = formats_->byTime[time];
    if (format == nullptr) {
        format.reset(formatFor(time, icu::Locale::createFromName(locale_.c_str())));
        if (format == nullptr) return {};
        format->adoptTimeZone(icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(timeZone_)));
    }
    icu::UnicodeString written;
    format->format(static_cast<double>(instant.time_since_epoch().count()), written);
    std::string result;
    return written.toUTF8String(result);
}

} // namespace vesk
