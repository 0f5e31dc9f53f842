#pragma once

#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFString.h>

CF_ASSUME_NONNULL_BEGIN
CF_EXTERN_C_BEGIN

typedef struct __CFRunLoop* CFRunLoopRef;
typedef CFStringRef CFRunLoopMode;
extern const CFRunLoopMode kCFRunLoopDefaultMode;

void CFRunLoopRun(void);
void CFRunLoopStop(CFRunLoopRef loop);
CFRunLoopRef CFRunLoopGetMain(void);

CF_EXTERN_C_END
CF_ASSUME_NONNULL_END
