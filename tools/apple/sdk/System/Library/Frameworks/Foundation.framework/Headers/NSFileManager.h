#pragma once

#import <Foundation/NSDictionary.h>

NS_ASSUME_NONNULL_BEGIN

@class NSData;
@class NSDate;
@class NSError;
@class NSURL;

@interface NSFileManager : NSObject
@property(class, readonly, strong) NSFileManager* defaultManager;
@property(readonly, copy) NSURL* homeDirectoryForCurrentUser;
@property(readonly, copy) NSString* currentDirectoryPath;
- (BOOL)fileExistsAtPath:(NSString*)path;
- (BOOL)isExecutableFileAtPath:(NSString*)path;
@end

NS_ASSUME_NONNULL_END
