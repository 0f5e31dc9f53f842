#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

FOUNDATION_EXPORT NSString* const CNLabelPhoneNumberiPhone;
FOUNDATION_EXPORT NSString* const CNLabelPhoneNumberMobile;
FOUNDATION_EXPORT NSString* const CNLabelPhoneNumberMain;

@interface CNPhoneNumber : NSObject <NSCopying, NSSecureCoding>
- (nullable instancetype)initWithStringValue:(NSString*)string;
@property(copy, readonly, nonatomic) NSString* stringValue;
@end

NS_ASSUME_NONNULL_END
