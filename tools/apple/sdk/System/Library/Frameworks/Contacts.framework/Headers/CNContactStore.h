#pragma once

#import <Contacts/CNContact.h>
#import <Foundation/Foundation.h>

@class CNContactFetchRequest, CNSaveRequest;

NS_ASSUME_NONNULL_BEGIN

typedef NS_ENUM(NSInteger, CNEntityType) {
    CNEntityTypeContacts = 0,
};

typedef NS_ENUM(NSInteger, CNAuthorizationStatus) {
    CNAuthorizationStatusNotDetermined = 0,
    CNAuthorizationStatusRestricted = 1,
    CNAuthorizationStatusDenied = 2,
    CNAuthorizationStatusAuthorized = 3,
};

@interface CNContactStore : NSObject
+ (CNAuthorizationStatus)authorizationStatusForEntityType:(CNEntityType)entityType;
- (void)requestAccessForEntityType:(CNEntityType)entityType
                 completionHandler:(void (^)(BOOL granted, NSError* _Nullable error))completionHandler;
- (nullable CNContact*)unifiedContactWithIdentifier:(NSString*)identifier
                                        keysToFetch:(NSArray<id<CNKeyDescriptor>>*)keys
                                              error:(NSError**)error;
- (BOOL)enumerateContactsWithFetchRequest:(CNContactFetchRequest*)fetchRequest
                                    error:(NSError**)error
                               usingBlock:(void(NS_NOESCAPE ^)(CNContact* contact, BOOL* stop))block;
- (BOOL)executeSaveRequest:(CNSaveRequest*)saveRequest error:(NSError**)error;
@end

NS_ASSUME_NONNULL_END
