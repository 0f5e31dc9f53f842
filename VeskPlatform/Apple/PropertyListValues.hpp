#pragma once

#import <Foundation/Foundation.h>

#include "VeskPlatform/PropertyListCoder.hpp"

#include <optional>

namespace vesk {

/// The value of an object of a property list; of no object and of any other class, the first kind. None where it is
/// nested more than 64 deep.
std::optional<PropertyListValue> propertyListValue(id<NSObject> _Nullable object);

/// The object of a value. Throws ErrorRecord "NSCocoaErrorDomain" 3852 for a value of the first kind and for a text or
/// key with a null byte.
id<NSObject> _Nonnull propertyListObject(const PropertyListValue& value);

} // namespace vesk
