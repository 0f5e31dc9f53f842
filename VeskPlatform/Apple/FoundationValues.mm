#import "VeskPlatform/Apple/FoundationValues.hpp"

#include "VeskSupport/ErrorRecord.hpp"

#include <chrono>
#include <cmath>

namespace vesk {

NSString* nsString(std::string_view text) {
    NSString* converted = [[NSString alloc] initWithBytes:text.data() length:text.size() encoding:NSUTF8StringEncoding];
    if (converted != nil) return converted;
    throw ErrorRecord("NSCocoaErrorDomain", NSFileReadInapplicableStringEncodingError, "The text is not valid UTF-8.");
}

NSString* _Nullable optionalNsString(const std::optional<std::string>& text) { return text ? nsString(*text) : nil; }

std::string utf8(NSString* text) {
    // Not by UTF8String, which ends at a null character.
    NSData* converted = [text dataUsingEncoding:NSUTF8StringEncoding allowLossyConversion:YES];
    return converted != nil ? bytes(converted) : std::string();
}

std::optional<std::string> optionalUtf8(NSString* _Nullable text) {
    if (text == nil) return std::nullopt;
    return utf8(known(text));
}

Instant instant(NSDate* date) {
    // A date counts from another year, so that a whole millisecond comes back as a few parts of a million less.
    constexpr double rounding = 0.001;
    const std::chrono::duration<double, std::milli> sinceEpoch{
        std::floor(date.timeIntervalSince1970 * 1'000.0 + rounding)};
    return Instant{std::chrono::duration_cast<Instant::duration>(sinceEpoch)};
}

std::optional<Instant> optionalInstant(NSDate* _Nullable date) {
    if (date == nil) return std::nullopt;
    return instant(known(date));
}

NSDate* nsDate(Instant instant) {
    const std::chrono::duration<double> sinceEpoch = instant.time_since_epoch();
    return [NSDate dateWithTimeIntervalSince1970:sinceEpoch.count()];
}

NSData* nsData(std::string_view bytes) { return [NSData dataWithBytes:bytes.data() length:bytes.size()]; }

std::string bytes(NSData* data) { return {static_cast<const char*>(data.bytes), data.length}; }

NSURL* fileUrl(const std::string& path) { return [NSURL fileURLWithPath:nsString(path)]; }

} // namespace vesk
