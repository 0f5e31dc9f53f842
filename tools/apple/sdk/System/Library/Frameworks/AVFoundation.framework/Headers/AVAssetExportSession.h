#pragma once

#import <AVFoundation/AVAsset.h>
#import <AVFoundation/AVVideoComposition.h>

NS_ASSUME_NONNULL_BEGIN

FOUNDATION_EXPORT NSString* const AVAssetExportPresetHighestQuality;

typedef NS_ENUM(NSInteger, AVAssetExportSessionStatus) {
    AVAssetExportSessionStatusUnknown = 0,
    AVAssetExportSessionStatusWaiting = 1,
    AVAssetExportSessionStatusExporting = 2,
    AVAssetExportSessionStatusCompleted = 3,
    AVAssetExportSessionStatusFailed = 4,
    AVAssetExportSessionStatusCancelled = 5,
};

@interface AVAssetExportSession : NSObject
- (nullable instancetype)initWithAsset:(AVAsset*)asset presetName:(NSString*)presetName;
@property(nonatomic, copy, nullable) AVFileType outputFileType;
@property(nonatomic, copy, nullable) NSURL* outputURL;
@property(nonatomic) BOOL shouldOptimizeForNetworkUse;
@property(nonatomic, copy, nullable) AVVideoComposition* videoComposition;
@property(nonatomic, readonly) AVAssetExportSessionStatus status;
@property(nonatomic, readonly, nullable) NSError* error;
@property(nonatomic, readonly) float progress;
- (void)exportAsynchronouslyWithCompletionHandler:(void (^)(void))handler;
@end

NS_ASSUME_NONNULL_END
