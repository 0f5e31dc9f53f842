#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

typedef NSString* AVMediaType NS_TYPED_EXTENSIBLE_ENUM;
FOUNDATION_EXPORT const AVMediaType AVMediaTypeAudio;
FOUNDATION_EXPORT const AVMediaType AVMediaTypeVideo;

typedef NSString* AVFileType NS_TYPED_EXTENSIBLE_ENUM;
FOUNDATION_EXPORT const AVFileType AVFileTypeMPEG4;

NS_ASSUME_NONNULL_END
