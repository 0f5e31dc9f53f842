// The parsers of dates and times. What one of them reads is written back as a time that reads as the same.

#include "VeskSupport/Iso8601.hpp"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace {

void checkRoundTrip(vesk::Instant instant) {
    using enum vesk::FractionalSeconds;
    // An offset can move the first and last day of the range out of it.
    const auto year = std::chrono::year_month_day(std::chrono::floor<std::chrono::days>(instant)).year();
    if (year < std::chrono::year(1) || year > std::chrono::year(9999)) return;
    if (vesk::parseInternetDateTime(vesk::formatUtcMilliseconds(instant), required) != instant) std::abort();
    const auto whole = std::chrono::floor<std::chrono::seconds>(instant);
    if (vesk::parseInternetDateTime(vesk::formatInternetDateTime(instant, std::chrono::seconds(0)), refused) != whole)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto day = vesk::parseWallDay(text);
    if (day && text.size() != 10) std::abort();
    for (const char separator : {' ', 'T'})
        for (const bool withSeconds : {false, true}) {
            const auto time = vesk::parseWallTime(text, separator, withSeconds);
            if (time && text.size() != (withSeconds ? 19U : 16U)) std::abort();
        }
    for (const auto fraction : {vesk::FractionalSeconds::required, vesk::FractionalSeconds::refused})
        if (const auto instant = vesk::parseInternetDateTime(text, fraction)) checkRoundTrip(*instant);
    return 0;
}
