#pragma once

#import <AVFoundation/AVAssetTrack.h>
#import <AVFoundation/AVAsynchronousKeyValueLoading.h>
#import <AVFoundation/AVMediaFormat.h>
#import <CoreMedia/CoreMedia.h>
#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@interface AVAsset : NSObject <NSCopying, AVAsynchronousKeyValueLoading>
@property(nonatomic, readonly) CMTime duration;
- (void)loadTracksWithMediaType:(AVMediaType)mediaType
              completionHandler:(void (^)(NSArray<AVAssetTrack*>* _Nullable tracks,
                                          NSError* _Nullable error))completionHandler API_AVAILABLE(macos(12.0));
@end

@interface AVURLAsset : AVAsset
+ (instancetype)URLAssetWithURL:(NSURL*)url options:(nullable NSDictionary<NSString*, id>*)options;
@end

NS_ASSUME_NONNULL_END
