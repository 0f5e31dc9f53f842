#pragma once

#import <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

@class NSData;

@interface NSUserDefaults : NSObject
@property(class, readonly, strong) NSUserDefaults* standardUserDefaults;
- (nullable instancetype)initWithSuiteName:(nullable NSString*)name;
- (nullable id)objectForKey:(NSString*)key;
- (nullable NSString*)stringForKey:(NSString*)key;
- (nullable NSData*)dataForKey:(NSString*)key;
- (void)setObject:(nullable id)value forKey:(NSString*)key;
- (void)removeObjectForKey:(NSString*)key;
@end

NS_ASSUME_NONNULL_END
