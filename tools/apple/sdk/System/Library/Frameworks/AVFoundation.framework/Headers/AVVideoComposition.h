#pragma once

#import <AVFoundation/AVAssetTrack.h>
#import <CoreMedia/CoreMedia.h>

NS_ASSUME_NONNULL_BEGIN

@protocol AVVideoCompositionInstruction <NSObject>
@end

@interface AVVideoCompositionLayerInstruction : NSObject <NSCopying, NSSecureCoding>
@end

@interface AVMutableVideoCompositionLayerInstruction : AVVideoCompositionLayerInstruction
+ (instancetype)videoCompositionLayerInstructionWithAssetTrack:(AVAssetTrack*)track;
- (void)setTransform:(CGAffineTransform)transform atTime:(CMTime)time;
@end

@interface AVVideoCompositionInstruction : NSObject <NSCopying, NSSecureCoding, AVVideoCompositionInstruction>
@end

@interface AVMutableVideoCompositionInstruction : AVVideoCompositionInstruction
+ (instancetype)videoCompositionInstruction;
@property(nonatomic) CMTimeRange timeRange;
@property(nonatomic, copy) NSArray<AVVideoCompositionLayerInstruction*>* layerInstructions;
@end

@interface AVVideoComposition : NSObject <NSCopying>
@end

@interface AVMutableVideoComposition : AVVideoComposition
+ (AVMutableVideoComposition*)videoComposition;
@property(nonatomic) CMTime frameDuration;
@property(nonatomic) CGSize renderSize;
@property(nonatomic, copy) NSArray<id<AVVideoCompositionInstruction>>* instructions;
@end

NS_ASSUME_NONNULL_END
