#pragma once

#include <CoreFoundation/CoreFoundation.h>

/// A program that runs, and the file of one.
typedef struct CF_BRIDGED_TYPE(id) __SecCode* SecCodeRef;
typedef const struct CF_BRIDGED_TYPE(id) __SecCode* SecStaticCodeRef;

typedef CF_OPTIONS(uint32_t, SecCSFlags) { kSecCSDefaultFlags = 0 };
