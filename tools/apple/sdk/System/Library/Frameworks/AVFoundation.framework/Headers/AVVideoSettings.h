#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

FOUNDATION_EXPORT NSString* const AVVideoCodecKey;
typedef NSString* AVVideoCodecType NS_TYPED_EXTENSIBLE_ENUM;
FOUNDATION_EXPORT const AVVideoCodecType AVVideoCodecTypeH264;
FOUNDATION_EXPORT NSString* const AVVideoWidthKey;
FOUNDATION_EXPORT NSString* const AVVideoHeightKey;
FOUNDATION_EXPORT NSString* const AVVideoCompressionPropertiesKey;
FOUNDATION_EXPORT NSString* const AVVideoAverageBitRateKey;
FOUNDATION_EXPORT NSString* const AVVideoProfileLevelKey;
FOUNDATION_EXPORT NSString* const AVVideoProfileLevelH264HighAutoLevel;

NS_ASSUME_NONNULL_END
