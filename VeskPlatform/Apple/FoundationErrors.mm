#import "VeskPlatform/Apple/FoundationErrors.hpp"

#import "VeskPlatform/Apple/FoundationValues.hpp"

#include <memory>

namespace vesk {
namespace {

std::shared_ptr<const ErrorRecord> underlyingRecord(NSError* error) {
    id underlying = error.userInfo[NSUnderlyingErrorKey];
    if (![underlying isKindOfClass:[NSError class]]) return nullptr;
    return std::make_shared<const ErrorRecord>(errorRecord(underlying));
}

} // namespace

ErrorRecord errorRecord(NSError* _Nullable error) {
    if (error == nil) return {utf8(NSCocoaErrorDomain), 0, "The operation couldn’t be completed."};
    return {utf8(error.domain), error.code, utf8(error.localizedDescription), underlyingRecord(error)};
}

void throwError(NSError* _Nullable error) { throw errorRecord(error); }

} // namespace vesk
