#pragma once

#include <CoreFoundation/CFBase.h>

CF_ASSUME_NONNULL_BEGIN

CF_EXPORT const CFStringRef kCFPreferencesCurrentApplication;

CF_EXPORT Boolean CFPreferencesAppSynchronize(CFStringRef application);

CF_ASSUME_NONNULL_END
