#pragma once

#import <Foundation/Foundation.h>

#include <optional>
#include <string>

NS_ASSUME_NONNULL_BEGIN

namespace vesk {

/// The framework's constant for a label that every address book knows; any other label is the user's own.
NSString* _Nullable nativeLabel(const std::optional<std::string>& label);
/// The same the other way round.
std::optional<std::string> storedLabel(NSString* _Nullable label);

} // namespace vesk

NS_ASSUME_NONNULL_END
