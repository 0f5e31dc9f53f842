#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

FOUNDATION_EXPORT NSString* const CNLabelHome;
FOUNDATION_EXPORT NSString* const CNLabelWork;
FOUNDATION_EXPORT NSString* const CNLabelOther;

@interface CNLabeledValue<ValueType : id <NSCopying, NSSecureCoding>> : NSObject <NSCopying, NSSecureCoding>
@property(copy, readonly, nullable, nonatomic) NSString* label;
@property(copy, readonly, nonatomic) ValueType value;
- (instancetype)initWithLabel:(nullable NSString*)label value:(ValueType)value;
@end

NS_ASSUME_NONNULL_END
