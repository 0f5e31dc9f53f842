#pragma once

#include <Availability.h>
#include <TargetConditionals.h>
#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
#define CF_EXTERN_C_BEGIN extern "C" {
#define CF_EXTERN_C_END }
#define CF_EXPORT extern "C"
#else
#define CF_EXTERN_C_BEGIN
#define CF_EXTERN_C_END
#define CF_EXPORT extern
#endif

#define CF_ASSUME_NONNULL_BEGIN _Pragma("clang assume_nonnull begin")
#define CF_ASSUME_NONNULL_END _Pragma("clang assume_nonnull end")
#define CF_RETURNS_RETAINED __attribute__((cf_returns_retained))
#define CF_RETURNS_NOT_RETAINED __attribute__((cf_returns_not_retained))
#define CF_BRIDGED_TYPE(type) __attribute__((objc_bridge(type)))
#define CF_BRIDGED_MUTABLE_TYPE(type) __attribute__((objc_bridge_mutable(type)))
#define CF_ENUM(type, name)                                                                                            \
    enum __attribute__((enum_extensibility(open))) name : type name;                                                   \
    enum name : type
/// In C++ the type of options is a plain number, so that they can be combined and be 0.
#define CF_OPTIONS(type, name)                                                                                         \
    type name;                                                                                                         \
    enum __attribute__((flag_enum, enum_extensibility(open))) : name

typedef unsigned char Boolean;
typedef uint8_t UInt8;
typedef uint16_t UInt16;
typedef uint32_t UInt32;
typedef int16_t SInt16;
typedef int32_t SInt32;
typedef int32_t OSStatus;
typedef int16_t OSErr;
typedef UInt32 OSType;
typedef UInt32 FourCharCode;
typedef uint16_t UniChar;
typedef unsigned long UniCharCount;
typedef double CFTimeInterval;
typedef double CFAbsoluteTime;
typedef double CGFloat;

typedef unsigned long CFTypeID;
typedef unsigned long CFOptionFlags;
typedef unsigned long CFHashCode;
typedef signed long CFIndex;

typedef struct {
    CFIndex location;
    CFIndex length;
} CFRange;

CF_ASSUME_NONNULL_BEGIN
CF_EXTERN_C_BEGIN

typedef const void* CFTypeRef;
typedef const struct CF_BRIDGED_TYPE(NSString) __CFString* CFStringRef;
typedef struct CF_BRIDGED_MUTABLE_TYPE(NSMutableString) __CFString* CFMutableStringRef;
typedef const struct __CFAllocator* CFAllocatorRef;
extern const CFAllocatorRef _Null_unspecified kCFAllocatorDefault;

CFTypeID CFGetTypeID(CFTypeRef object);
CFTypeRef CFRetain(CFTypeRef object);
void CFRelease(CFTypeRef object);
Boolean CFEqual(CFTypeRef one, CFTypeRef other);
CFHashCode CFHash(CFTypeRef object);

CF_EXTERN_C_END
CF_ASSUME_NONNULL_END
