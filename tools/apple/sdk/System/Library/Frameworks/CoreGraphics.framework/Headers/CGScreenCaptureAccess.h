#pragma once

#include <CoreFoundation/CoreFoundation.h>

CF_EXTERN_C_BEGIN

/// Whether the screen may be captured; asks nobody.
bool CGPreflightScreenCaptureAccess(void);
/// The same, and asks the user where nothing was decided yet.
bool CGRequestScreenCaptureAccess(void);

CF_EXTERN_C_END
