#include "VeskShellCore/AccessDenial.hpp"

namespace vesk {
namespace {

constexpr int noReadPermission = 257, operationNotPermitted = 1, permissionDenied = 13;

bool saysDenied(const ErrorRecord& error) {
    if (error.domain() == "NSCocoaErrorDomain") return error.code() == noReadPermission;
    if (error.domain() != "NSPOSIXErrorDomain") return false;
    return error.code() == operationNotPermitted || error.code() == permissionDenied;
}

} // namespace

bool isAccessDenied(const ErrorRecord& error) {
    for (const ErrorRecord* cause = &error; cause != nullptr; cause = cause->underlying())
        if (saysDenied(*cause)) return true;
    return false;
}

} // namespace vesk
