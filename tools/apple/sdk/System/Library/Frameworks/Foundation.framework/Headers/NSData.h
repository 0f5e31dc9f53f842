#pragma once

#import <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

@class NSError;
@class NSURL;

typedef NS_OPTIONS(NSUInteger, NSDataReadingOptions) { NSDataReadingMappedIfSafe = 1UL << 0 };
typedef NS_OPTIONS(NSUInteger, NSDataWritingOptions) {
    NSDataWritingAtomic = 1UL << 0,
    NSDataWritingWithoutOverwriting = 1UL << 1,
};

@interface NSData : NSObject <NSCopying, NSSecureCoding>
@property(readonly) NSUInteger length;
@property(readonly) const void* bytes NS_RETURNS_INNER_POINTER;
+ (instancetype)data;
+ (instancetype)dataWithBytes:(nullable const void*)bytes length:(NSUInteger)length;
+ (nullable instancetype)dataWithContentsOfFile:(NSString*)path
                                        options:(NSDataReadingOptions)options
                                          error:(NSError* _Nullable* _Nullable)error;
+ (nullable instancetype)dataWithContentsOfURL:(NSURL*)url
                                       options:(NSDataReadingOptions)options
                                         error:(NSError* _Nullable* _Nullable)error;
- (BOOL)writeToFile:(NSString*)path options:(NSDataWritingOptions)options error:(NSError* _Nullable* _Nullable)error;
- (BOOL)writeToURL:(NSURL*)url options:(NSDataWritingOptions)options error:(NSError* _Nullable* _Nullable)error;
@end

@interface NSMutableData : NSData
- (void)appendData:(NSData*)other;
- (void)appendBytes:(const void*)bytes length:(NSUInteger)length;
@end

NS_ASSUME_NONNULL_END
