#include "VeskPlatform/Linux/OpenFailure.hpp"

#include "VeskSupport/ErrorRecord.hpp"

#include <cerrno>

namespace vesk {

bool isShortage(int errnoValue) { return errnoValue == EMFILE || errnoValue == ENFILE || errnoValue == ENOMEM; }

void throwOpenFailure(int errnoValue, const std::string& path) {
    const PosixError failure(errnoValue, path);
    if (isShortage(errnoValue)) throw ErrorRecord(failure.domain(), failure.code(), failure.description());
    throw failure;
}

} // namespace vesk
