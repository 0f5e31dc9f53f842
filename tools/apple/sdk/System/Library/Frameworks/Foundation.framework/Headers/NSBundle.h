#pragma once

#import <Foundation/NSDictionary.h>

NS_ASSUME_NONNULL_BEGIN

@class NSURL;

@interface NSBundle : NSObject
@property(class, readonly, strong) NSBundle* mainBundle;
+ (nullable instancetype)bundleWithPath:(NSString*)path;
@property(readonly, copy) NSString* bundlePath;
@property(nullable, readonly, copy) NSString* executablePath;
@property(nullable, readonly, copy) NSString* resourcePath;
@property(readonly, copy) NSURL* bundleURL;
@property(nullable, readonly, copy) NSURL* executableURL;
@property(nullable, readonly, copy) NSURL* resourceURL;
@property(nullable, readonly, copy) NSDictionary<NSString*, id>* infoDictionary;
@end

NS_ASSUME_NONNULL_END
