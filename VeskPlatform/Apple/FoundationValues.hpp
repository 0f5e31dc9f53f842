#pragma once

#import <Foundation/Foundation.h>

#include "VeskSupport/Instant.hpp"

#include <optional>
#include <string>
#include <string_view>

NS_ASSUME_NONNULL_BEGIN

namespace vesk {

#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wnullable-to-nonnull-conversion"
/// A pointer that was looked at and is not nil: the compiler does not follow what a condition tells.
template <class Pointer> Pointer _Nonnull known(Pointer _Nullable pointer) { return pointer; }
#pragma clang diagnostic pop

/// Throws ErrorRecord "NSCocoaErrorDomain" 261 for bytes that are no UTF-8.
NSString* nsString(std::string_view text);
/// None stays none.
NSString* _Nullable optionalNsString(const std::optional<std::string>& text);
/// A lone surrogate, which UTF-8 has no bytes for, becomes a question mark.
std::string utf8(NSString* text);
/// None where there is no text.
std::optional<std::string> optionalUtf8(NSString* _Nullable text);

/// Cut to milliseconds, towards the past.
Instant instant(NSDate* date);
std::optional<Instant> optionalInstant(NSDate* _Nullable date);
NSDate* nsDate(Instant instant);

/// A copy of the bytes.
NSData* nsData(std::string_view bytes);
std::string bytes(NSData* data);

/// Of an absolute path, or of one relative to the current directory.
NSURL* fileUrl(const std::string& path);

} // namespace vesk

NS_ASSUME_NONNULL_END
