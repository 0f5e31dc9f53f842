#pragma once

#import <Foundation/NSDictionary.h>

NS_ASSUME_NONNULL_BEGIN

typedef NSString* NSErrorDomain;
typedef NSString* NSErrorUserInfoKey;
FOUNDATION_EXPORT const NSErrorDomain NSCocoaErrorDomain;
FOUNDATION_EXPORT const NSErrorDomain NSPOSIXErrorDomain;
FOUNDATION_EXPORT const NSErrorDomain NSOSStatusErrorDomain;
FOUNDATION_EXPORT const NSErrorUserInfoKey NSUnderlyingErrorKey;
FOUNDATION_EXPORT const NSErrorUserInfoKey NSLocalizedDescriptionKey;

@interface NSError : NSObject <NSCopying, NSSecureCoding>
+ (instancetype)errorWithDomain:(NSErrorDomain)domain
                           code:(NSInteger)code
                       userInfo:(nullable NSDictionary<NSErrorUserInfoKey, id>*)userInfo;
@property(readonly, copy) NSErrorDomain domain;
@property(readonly) NSInteger code;
@property(readonly, copy) NSDictionary<NSErrorUserInfoKey, id>* userInfo;
@property(readonly, copy) NSString* localizedDescription;
@end

/// Of NSCocoaErrorDomain.
enum : NSInteger {
    NSFileNoSuchFileError = 4,
    NSFileReadUnknownError = 256,
    NSFileReadNoPermissionError = 257,
    NSFileReadInvalidFileNameError = 258,
    NSFileReadNoSuchFileError = 260,
    NSFileReadInapplicableStringEncodingError = 261,
    NSFileReadTooLargeError = 263,
    NSFileWriteUnknownError = 512,
    NSFileWriteNoPermissionError = 513,
    NSFileWriteInvalidFileNameError = 514,
    NSFileWriteFileExistsError = 516,
    NSFileWriteOutOfSpaceError = 640,
    NSFileWriteVolumeReadOnlyError = 642,
    NSPropertyListReadCorruptError = 3840,
    NSPropertyListWriteStreamError = 3851,
};

NS_ASSUME_NONNULL_END
