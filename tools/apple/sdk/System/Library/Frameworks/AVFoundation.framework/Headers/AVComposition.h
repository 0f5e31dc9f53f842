#pragma once

#import <AVFoundation/AVAsset.h>
#import <AVFoundation/AVAssetTrack.h>

NS_ASSUME_NONNULL_BEGIN

@interface AVCompositionTrack : AVAssetTrack
@end

@interface AVMutableCompositionTrack : AVCompositionTrack
- (BOOL)insertTimeRange:(CMTimeRange)timeRange
                ofTrack:(AVAssetTrack*)track
                 atTime:(CMTime)startTime
                  error:(NSError* _Nullable* _Nullable)error;
@end

@interface AVComposition : AVAsset
@end

@interface AVMutableComposition : AVComposition
+ (instancetype)composition;
- (nullable AVMutableCompositionTrack*)addMutableTrackWithMediaType:(AVMediaType)mediaType
                                                   preferredTrackID:(CMPersistentTrackID)preferredTrackID;
@end

NS_ASSUME_NONNULL_END
