#pragma once

#import <Foundation/NSDictionary.h>
#import <Foundation/NSURL.h>
#import <Foundation/NSValue.h>

NS_ASSUME_NONNULL_BEGIN

@class NSData;
@class NSDate;
@class NSError;

typedef NSString* NSFileAttributeKey NS_TYPED_EXTENSIBLE_ENUM;
typedef NSString* NSFileAttributeType NS_TYPED_ENUM;
FOUNDATION_EXPORT const NSFileAttributeKey NSFileType;
FOUNDATION_EXPORT const NSFileAttributeType NSFileTypeDirectory;
FOUNDATION_EXPORT const NSFileAttributeType NSFileTypeRegular;
FOUNDATION_EXPORT const NSFileAttributeType NSFileTypeSymbolicLink;
FOUNDATION_EXPORT const NSFileAttributeKey NSFileOwnerAccountID;
FOUNDATION_EXPORT const NSFileAttributeKey NSFilePosixPermissions;

typedef NS_OPTIONS(NSUInteger, NSDirectoryEnumerationOptions) { NSDirectoryEnumerationSkipsHiddenFiles = 1UL << 2 };
FOUNDATION_EXPORT NSString* NSTemporaryDirectory(void);

@interface NSFileManager : NSObject
@property(class, readonly, strong) NSFileManager* defaultManager;
@property(readonly, copy) NSURL* homeDirectoryForCurrentUser;
@property(readonly, copy) NSString* currentDirectoryPath;
@property(nullable, readonly, copy) id<NSObject, NSCopying> ubiquityIdentityToken;
- (nullable NSURL*)URLForUbiquityContainerIdentifier:(nullable NSString*)identifier;
- (BOOL)fileExistsAtPath:(NSString*)path;
- (BOOL)fileExistsAtPath:(NSString*)path isDirectory:(nullable BOOL*)isDirectory;
- (BOOL)isExecutableFileAtPath:(NSString*)path;
- (nullable NSDictionary<NSFileAttributeKey, id>*)attributesOfItemAtPath:(NSString*)path
                                                                   error:(NSError* _Nullable* _Nullable)error;
- (BOOL)setAttributes:(NSDictionary<NSFileAttributeKey, id>*)attributes
         ofItemAtPath:(NSString*)path
                error:(NSError* _Nullable* _Nullable)error;
- (BOOL)createDirectoryAtURL:(NSURL*)url
    withIntermediateDirectories:(BOOL)withIntermediates
                     attributes:(nullable NSDictionary<NSFileAttributeKey, id>*)attributes
                          error:(NSError* _Nullable* _Nullable)error;
- (nullable NSArray<NSURL*>*)contentsOfDirectoryAtURL:(NSURL*)url
                           includingPropertiesForKeys:(nullable NSArray<NSURLResourceKey>*)keys
                                              options:(NSDirectoryEnumerationOptions)options
                                                error:(NSError* _Nullable* _Nullable)error;
- (BOOL)copyItemAtURL:(NSURL*)source toURL:(NSURL*)destination error:(NSError* _Nullable* _Nullable)error;
- (BOOL)moveItemAtURL:(NSURL*)source toURL:(NSURL*)destination error:(NSError* _Nullable* _Nullable)error;
- (BOOL)removeItemAtURL:(NSURL*)url error:(NSError* _Nullable* _Nullable)error;
@end

NS_ASSUME_NONNULL_END
