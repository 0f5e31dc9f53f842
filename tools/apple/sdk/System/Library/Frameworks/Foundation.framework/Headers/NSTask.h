#pragma once

#import <Foundation/NSArray.h>
#import <Foundation/NSError.h>
#import <Foundation/NSObject.h>
#import <Foundation/NSString.h>
#import <Foundation/NSURL.h>

NS_ASSUME_NONNULL_BEGIN

typedef NS_ENUM(NSInteger, NSTaskTerminationReason) {
    NSTaskTerminationReasonExit = 1,
    NSTaskTerminationReasonUncaughtSignal = 2,
};

@interface NSTask : NSObject
- (instancetype)init;
@property(nullable, copy) NSURL* executableURL;
@property(nullable, copy) NSArray<NSString*>* arguments;
@property(nullable, retain) id standardInput;
@property(nullable, retain) id standardOutput;
@property(nullable, retain) id standardError;
- (BOOL)launchAndReturnError:(NSError**)error;
- (void)waitUntilExit;
@property(readonly, getter=isRunning) BOOL running;
@property(readonly) int terminationStatus;
@property(readonly) NSTaskTerminationReason terminationReason;
@end

NS_ASSUME_NONNULL_END
