#pragma once

#import <Foundation/NSDictionary.h>

NS_ASSUME_NONNULL_BEGIN

@class NSError;

typedef NSString* NSURLResourceKey NS_TYPED_EXTENSIBLE_ENUM;
FOUNDATION_EXPORT const NSURLResourceKey NSURLContentModificationDateKey;
FOUNDATION_EXPORT const NSURLResourceKey NSURLFileSizeKey;
FOUNDATION_EXPORT const NSURLResourceKey NSURLIsRegularFileKey;

@interface NSURL : NSObject <NSCopying, NSSecureCoding>
+ (nullable instancetype)URLWithString:(NSString*)text;
+ (NSURL*)fileURLWithPath:(NSString*)path;
+ (NSURL*)fileURLWithPath:(NSString*)path isDirectory:(BOOL)isDirectory;
@property(nullable, readonly, copy) NSString* absoluteString;
@property(nullable, readonly, copy) NSString* scheme;
@property(nullable, readonly, copy) NSString* host;
@property(nullable, readonly, copy) NSString* path;
@property(readonly, getter=isFileURL) BOOL fileURL;
@property(readonly) const char* fileSystemRepresentation NS_RETURNS_INNER_POINTER;
@property(nullable, readonly, copy) NSString* lastPathComponent;
@property(nullable, readonly, copy) NSURL* URLByDeletingLastPathComponent;
@property(nullable, readonly, copy) NSURL* URLByResolvingSymlinksInPath;
- (nullable NSURL*)URLByAppendingPathComponent:(NSString*)component;
- (nullable NSURL*)URLByAppendingPathComponent:(NSString*)component isDirectory:(BOOL)isDirectory;
- (nullable NSDictionary<NSURLResourceKey, id>*)resourceValuesForKeys:(NSArray<NSURLResourceKey>*)keys
                                                                error:(NSError* _Nullable* _Nullable)error;
@end

NS_ASSUME_NONNULL_END
