#pragma once

#import <Foundation/NSArray.h>
#import <Foundation/NSDictionary.h>
#import <Foundation/NSError.h>
#import <Foundation/NSObject.h>
#import <Foundation/NSString.h>
#import <Foundation/NSURL.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSTask : NSObject
- (instancetype)init;
@property(nullable, copy) NSURL* executableURL;
@property(nullable, copy) NSArray<NSString*>* arguments;
@property(nullable, copy) NSURL* currentDirectoryURL;
@property(nullable, copy) NSDictionary<NSString*, NSString*>* environment;
@property(nullable, retain) id standardInput;
@property(nullable, retain) id standardOutput;
@property(nullable, retain) id standardError;
- (BOOL)launchAndReturnError:(NSError**)error;
- (void)waitUntilExit;
@property(nullable, copy) void (^terminationHandler)(NSTask* task);
@property(readonly) int processIdentifier;
@property(readonly, getter=isRunning) BOOL running;
@property(readonly) int terminationStatus;
@end

NS_ASSUME_NONNULL_END
