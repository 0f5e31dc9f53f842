#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

typedef NSString* AVMediaType NS_TYPED_EXTENSIBLE_ENUM;
FOUNDATION_EXPORT AVMediaType const AVMediaTypeAudio;
FOUNDATION_EXPORT AVMediaType const AVMediaTypeVideo;

typedef NSString* AVFileType NS_TYPED_EXTENSIBLE_ENUM;
FOUNDATION_EXPORT AVFileType const AVFileTypeMPEG4;

NS_ASSUME_NONNULL_END
