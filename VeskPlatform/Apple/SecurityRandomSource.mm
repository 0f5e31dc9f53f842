#import "VeskPlatform/Apple/SecurityRandomSource.hpp"

#import <Security/Security.h>

#include "VeskSupport/ErrorRecord.hpp"

#include <cerrno>

namespace vesk {

void SecurityRandomSource::fill(std::span<std::uint8_t> bytes) {
    if (SecRandomCopyBytes(kSecRandomDefault, bytes.size(), bytes.data()) != errSecSuccess)
        throw PosixError(EIO, "random numbers");
}

} // namespace vesk
