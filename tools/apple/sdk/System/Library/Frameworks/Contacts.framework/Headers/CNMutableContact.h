#pragma once

#import <Contacts/CNContact.h>

NS_ASSUME_NONNULL_BEGIN

@interface CNMutableContact : CNContact
- (instancetype)init;
@property(copy, nonatomic) NSString* givenName;
@property(copy, nonatomic) NSString* middleName;
@property(copy, nonatomic) NSString* familyName;
@property(copy, nonatomic) NSString* nickname;
@property(copy, nonatomic) NSString* organizationName;
@property(copy, nonatomic) NSString* departmentName;
@property(copy, nonatomic) NSString* jobTitle;
@property(copy, nonatomic) NSArray<CNLabeledValue<CNPhoneNumber*>*>* phoneNumbers;
@property(copy, nonatomic) NSArray<CNLabeledValue<NSString*>*>* emailAddresses;
@property(copy, nonatomic) NSArray<CNLabeledValue<CNPostalAddress*>*>* postalAddresses;
@end

NS_ASSUME_NONNULL_END
