#pragma once

#include "VeskSupport/ErrorRecord.hpp"

namespace vesk {

/// Whether an error, or one that it came from, says that the user may not: "NSCocoaErrorDomain" 257, or
/// "NSPOSIXErrorDomain" 1 (operation not permitted) or 13 (permission denied).
bool isAccessDenied(const ErrorRecord& error);

} // namespace vesk
