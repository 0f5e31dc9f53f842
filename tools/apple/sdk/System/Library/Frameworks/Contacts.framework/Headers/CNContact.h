#pragma once

#import <Contacts/CNLabeledValue.h>
#import <Contacts/CNPhoneNumber.h>
#import <Contacts/CNPostalAddress.h>
#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

/// Names a property of a contact.
@protocol CNKeyDescriptor <NSObject, NSSecureCoding, NSCopying>
@end

@interface NSString (Contacts) <CNKeyDescriptor>
@end

FOUNDATION_EXPORT NSString* const CNContactIdentifierKey;
FOUNDATION_EXPORT NSString* const CNContactGivenNameKey;
FOUNDATION_EXPORT NSString* const CNContactMiddleNameKey;
FOUNDATION_EXPORT NSString* const CNContactFamilyNameKey;
FOUNDATION_EXPORT NSString* const CNContactNicknameKey;
FOUNDATION_EXPORT NSString* const CNContactOrganizationNameKey;
FOUNDATION_EXPORT NSString* const CNContactJobTitleKey;
FOUNDATION_EXPORT NSString* const CNContactDepartmentNameKey;
FOUNDATION_EXPORT NSString* const CNContactPhoneNumbersKey;
FOUNDATION_EXPORT NSString* const CNContactEmailAddressesKey;
FOUNDATION_EXPORT NSString* const CNContactPostalAddressesKey;

/// Raises an exception for a property that was not fetched.
@interface CNContact : NSObject <NSCopying, NSMutableCopying, NSSecureCoding>
@property(readonly, copy, nonatomic) NSString* identifier;
@property(readonly, copy, nonatomic) NSString* givenName;
@property(readonly, copy, nonatomic) NSString* middleName;
@property(readonly, copy, nonatomic) NSString* familyName;
@property(readonly, copy, nonatomic) NSString* nickname;
@property(readonly, copy, nonatomic) NSString* organizationName;
@property(readonly, copy, nonatomic) NSString* departmentName;
@property(readonly, copy, nonatomic) NSString* jobTitle;
@property(readonly, copy, nonatomic) NSArray<CNLabeledValue<CNPhoneNumber*>*>* phoneNumbers;
@property(readonly, copy, nonatomic) NSArray<CNLabeledValue<NSString*>*>* emailAddresses;
@property(readonly, copy, nonatomic) NSArray<CNLabeledValue<CNPostalAddress*>*>* postalAddresses;
@end

NS_ASSUME_NONNULL_END
