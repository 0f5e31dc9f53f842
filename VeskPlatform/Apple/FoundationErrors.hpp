#pragma once

#import <Foundation/Foundation.h>

#include "VeskSupport/ErrorRecord.hpp"

NS_ASSUME_NONNULL_BEGIN

namespace vesk {

/// A failure as the system tells it: domain, code, localized description and what it comes from. Without one, the
/// domain is "NSCocoaErrorDomain" and the code 0.
ErrorRecord errorRecord(NSError* _Nullable error);

[[noreturn]] void throwError(NSError* _Nullable error);

} // namespace vesk

NS_ASSUME_NONNULL_END
