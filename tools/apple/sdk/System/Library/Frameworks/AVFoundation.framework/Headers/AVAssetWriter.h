#pragma once

#import <AVFoundation/AVAssetWriterInput.h>
#import <AVFoundation/AVMediaFormat.h>

NS_ASSUME_NONNULL_BEGIN

typedef NS_ENUM(NSInteger, AVAssetWriterStatus) {
    AVAssetWriterStatusUnknown = 0,
    AVAssetWriterStatusWriting = 1,
    AVAssetWriterStatusCompleted = 2,
    AVAssetWriterStatusFailed = 3,
    AVAssetWriterStatusCancelled = 4,
};

@interface AVAssetWriter : NSObject
+ (nullable instancetype)assetWriterWithURL:(NSURL*)url
                                   fileType:(AVFileType)fileType
                                      error:(NSError* _Nullable* _Nullable)error;
@property(readonly) AVAssetWriterStatus status;
@property(readonly, nullable) NSError* error;
- (BOOL)canAddInput:(AVAssetWriterInput*)input;
- (void)addInput:(AVAssetWriterInput*)input;
- (BOOL)startWriting;
- (void)startSessionAtSourceTime:(CMTime)startTime;
- (void)finishWritingWithCompletionHandler:(void (^)(void))handler;
@end

NS_ASSUME_NONNULL_END
