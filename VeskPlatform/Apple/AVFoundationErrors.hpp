#pragma once

#import <Foundation/Foundation.h>

#import "VeskPlatform/Apple/FoundationErrors.hpp"

#include <exception>

namespace vesk {

/// A failure that is kept to be thrown later; null where there is none.
inline std::exception_ptr failureOf(NSError* _Nullable error) {
    return error == nil ? nullptr : std::make_exception_ptr(errorRecord(error));
}

} // namespace vesk
