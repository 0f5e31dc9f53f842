#pragma once

#import <AVFoundation/AVMediaFormat.h>
#import <CoreMedia/CoreMedia.h>
#import <CoreVideo/CoreVideo.h>
#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@interface AVAssetWriterInput : NSObject
+ (instancetype)assetWriterInputWithMediaType:(AVMediaType)mediaType
                               outputSettings:(nullable NSDictionary<NSString*, id>*)outputSettings;
@property(nonatomic, readonly, getter=isReadyForMoreMediaData) BOOL readyForMoreMediaData;
@property(nonatomic) BOOL expectsMediaDataInRealTime;
- (void)markAsFinished;
@end

@interface AVAssetWriterInputPixelBufferAdaptor : NSObject
+ (instancetype)assetWriterInputPixelBufferAdaptorWithAssetWriterInput:(AVAssetWriterInput*)input
                                           sourcePixelBufferAttributes:
                                               (nullable NSDictionary<NSString*, id>*)attributes;
- (BOOL)appendPixelBuffer:(CVPixelBufferRef)pixelBuffer withPresentationTime:(CMTime)presentationTime;
@end

NS_ASSUME_NONNULL_END
