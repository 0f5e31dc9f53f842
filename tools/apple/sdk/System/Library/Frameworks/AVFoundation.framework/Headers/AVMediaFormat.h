#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

typedef NSString* AVMediaType NS_TYPED_EXTENSIBLE_ENUM;
FOUNDATION_EXPORT const AVMediaType AVMediaTypeAudio;

NS_ASSUME_NONNULL_END
