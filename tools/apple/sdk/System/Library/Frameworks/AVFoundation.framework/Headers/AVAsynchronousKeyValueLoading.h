#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

typedef NS_ENUM(NSInteger, AVKeyValueStatus) {
    AVKeyValueStatusUnknown = 0,
    AVKeyValueStatusLoading = 1,
    AVKeyValueStatusLoaded = 2,
    AVKeyValueStatusFailed = 3,
    AVKeyValueStatusCancelled = 4,
};

@protocol AVAsynchronousKeyValueLoading
- (AVKeyValueStatus)statusOfValueForKey:(NSString*)key error:(NSError* _Nullable* _Nullable)error;
- (void)loadValuesAsynchronouslyForKeys:(NSArray<NSString*>*)keys
                      completionHandler:(nullable void (^)(void))completionHandler;
@end

NS_ASSUME_NONNULL_END
