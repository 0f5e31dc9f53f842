#pragma once

#import <Contacts/CNPostalAddress.h>

NS_ASSUME_NONNULL_BEGIN

typedef NS_ENUM(NSInteger, CNPostalAddressFormatterStyle) {
    CNPostalAddressFormatterStyleMailingAddress = 0,
};

@interface CNPostalAddressFormatter : NSObject
+ (NSString*)stringFromPostalAddress:(CNPostalAddress*)postalAddress style:(CNPostalAddressFormatterStyle)style;
@end

NS_ASSUME_NONNULL_END
