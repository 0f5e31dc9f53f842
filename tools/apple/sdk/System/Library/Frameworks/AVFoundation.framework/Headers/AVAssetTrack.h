#pragma once

#import <AVFoundation/AVAsynchronousKeyValueLoading.h>
#import <CoreGraphics/CoreGraphics.h>
#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@interface AVAssetTrack : NSObject <NSCopying, AVAsynchronousKeyValueLoading>
@property(nonatomic, readonly) CGSize naturalSize;
@property(nonatomic, readonly) CGAffineTransform preferredTransform;
@end

NS_ASSUME_NONNULL_END
