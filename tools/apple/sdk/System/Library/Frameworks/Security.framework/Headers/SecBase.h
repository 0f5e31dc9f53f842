#pragma once

#include <CoreFoundation/CoreFoundation.h>

/// Results of the framework's calls.
enum : OSStatus {
    errSecSuccess = 0,
    errSecIO = -36,
    errSecParam = -50,
    errSecNotAvailable = -25291,
    errSecAuthFailed = -25293,
    errSecDuplicateItem = -25299,
    errSecItemNotFound = -25300,
    errSecInteractionNotAllowed = -25308,
    errSecDecode = -26275,
};
