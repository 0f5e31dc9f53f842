#pragma once

#import <Foundation/NSObject.h>
#import <Foundation/NSRange.h>

NS_ASSUME_NONNULL_BEGIN

@class NSArray<ObjectType>;
@class NSData;

typedef unsigned short unichar;
typedef NSUInteger NSStringEncoding;
enum : NSStringEncoding { NSUTF8StringEncoding = 4 };

@interface NSString : NSObject <NSCopying, NSSecureCoding>
@property(readonly) NSUInteger length;
- (unichar)characterAtIndex:(NSUInteger)index;
- (nullable instancetype)initWithBytes:(const void*)bytes length:(NSUInteger)length encoding:(NSStringEncoding)encoding;
- (nullable instancetype)initWithData:(NSData*)data encoding:(NSStringEncoding)encoding;
+ (nullable instancetype)stringWithUTF8String:(const char*)text;
+ (instancetype)string;
+ (instancetype)stringWithFormat:(NSString*)format, ... __attribute__((format(__NSString__, 1, 2)));
- (NSString*)stringByAppendingString:(NSString*)other;
- (BOOL)hasPrefix:(NSString*)prefix;
- (BOOL)isEqualToString:(NSString*)other;
@property(readonly, copy) NSString* lowercaseString;
- (nullable NSData*)dataUsingEncoding:(NSStringEncoding)encoding;
- (nullable NSData*)dataUsingEncoding:(NSStringEncoding)encoding allowLossyConversion:(BOOL)lossy;
- (NSUInteger)lengthOfBytesUsingEncoding:(NSStringEncoding)encoding;
@property(nullable, readonly) const char* UTF8String NS_RETURNS_INNER_POINTER;
@property(readonly) const char* fileSystemRepresentation NS_RETURNS_INNER_POINTER;
@property(readonly, copy) NSString* stringByResolvingSymlinksInPath;
@end

/// What the compiler makes of @"…".
@interface NSConstantString : NSString
@end

NS_ASSUME_NONNULL_END
