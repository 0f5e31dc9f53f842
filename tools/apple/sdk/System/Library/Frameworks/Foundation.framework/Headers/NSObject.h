#pragma once

#import <Foundation/NSObjCRuntime.h>

NS_ASSUME_NONNULL_BEGIN

@class NSString;

@protocol NSObject
- (BOOL)isEqual:(nullable id)object;
@property(readonly) NSUInteger hash;
- (instancetype)self;
@property(readonly, copy) NSString* description;
- (BOOL)isKindOfClass:(Class)aClass;
- (BOOL)respondsToSelector:(SEL)selector;
@end

NS_ROOT_CLASS
@interface NSObject <NSObject>
+ (instancetype)alloc;
- (instancetype)init NS_DESIGNATED_INITIALIZER;
+ (instancetype)new;
+ (Class)class;
- (Class)class;
- (id)copy;
- (id)mutableCopy;
- (void)dealloc;
@end

@protocol NSCopying
@end
@protocol NSMutableCopying
@end
@protocol NSSecureCoding
@end
@protocol NSFastEnumeration
@end

NS_ASSUME_NONNULL_END
