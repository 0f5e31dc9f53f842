#import "VeskPlatform/Apple/FoundationPropertyListCoder.hpp"

#import "VeskPlatform/Apple/FoundationErrors.hpp"
#import "VeskPlatform/Apple/FoundationValues.hpp"
#import "VeskPlatform/Apple/PropertyListValues.hpp"

#include "VeskSupport/Json.hpp"

#include <utility>

namespace vesk {

std::string FoundationPropertyListCoder::encodeBinary(const PropertyListValue& value) {
    @autoreleasepool {
        NSError* error = nil;
        NSData* data = [NSPropertyListSerialization dataWithPropertyList:propertyListObject(value)
                                                                  format:NSPropertyListBinaryFormat_v1_0
                                                                 options:0
                                                                   error:&error];
        if (data == nil) throwError(error);
        return bytes(known(data));
    }
}

PropertyListValue FoundationPropertyListCoder::decode(const std::string& bytes) {
    @autoreleasepool {
        id<NSObject> object = [NSPropertyListSerialization propertyListWithData:nsData(bytes)
                                                                        options:NSPropertyListImmutable
                                                                         format:nil
                                                                          error:nil];
        auto value = object == nil ? std::nullopt : propertyListValue(object);
        if (!value) throw DecodingError(DecodingError::Kind::corrupt, "The data is not a valid property list.");
        return *std::move(value);
    }
}

} // namespace vesk
