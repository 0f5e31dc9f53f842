#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@interface CNPostalAddress : NSObject <NSCopying, NSMutableCopying, NSSecureCoding>
@property(copy, readonly, nonatomic) NSString* street;
@property(copy, readonly, nonatomic) NSString* subLocality;
@property(copy, readonly, nonatomic) NSString* city;
@property(copy, readonly, nonatomic) NSString* subAdministrativeArea;
@property(copy, readonly, nonatomic) NSString* state;
@property(copy, readonly, nonatomic) NSString* postalCode;
@property(copy, readonly, nonatomic) NSString* country;
@property(copy, readonly, nonatomic) NSString* ISOCountryCode;
@end

@interface CNMutablePostalAddress : CNPostalAddress
@property(copy, nonatomic) NSString* street;
@property(copy, nonatomic) NSString* subLocality;
@property(copy, nonatomic) NSString* city;
@property(copy, nonatomic) NSString* subAdministrativeArea;
@property(copy, nonatomic) NSString* state;
@property(copy, nonatomic) NSString* postalCode;
@property(copy, nonatomic) NSString* country;
@property(copy, nonatomic) NSString* ISOCountryCode;
@end

NS_ASSUME_NONNULL_END
