#import "VeskPlatform/Apple/FoundationErrors.hpp"

#import "VeskPlatform/Apple/FoundationValues.hpp"

#include <memory>

namespace vesk {
namespace {

std::shared_ptr<const ErrorRecord> underlyingRecord(NSError* error) {
    id<NSObject> underlying = error.userInfo[NSUnderlyingErrorKey];
    if (![underlying isKindOfClass:[NSError class]]) return nullptr;
    return std::make_shared<const ErrorRecord>(errorRecord(static_cast<NSError*>(underlying)));
}

ErrorRecord recordOf(NSError* error) {
    return {utf8(error.domain), error.code, utf8(error.localizedDescription), underlyingRecord(error)};
}

} // namespace

ErrorRecord errorRecord(NSError* _Nullable error) {
    if (error != nil) return recordOf(known(error));
    return {utf8(NSCocoaErrorDomain), 0, "The operation couldn’t be completed."};
}

void throwError(NSError* _Nullable error) { throw errorRecord(error); }

} // namespace vesk
