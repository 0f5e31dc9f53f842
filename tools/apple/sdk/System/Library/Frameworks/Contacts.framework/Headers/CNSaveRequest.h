#pragma once

#import <Foundation/Foundation.h>

@class CNMutableContact;

NS_ASSUME_NONNULL_BEGIN

@interface CNSaveRequest : NSObject
- (void)addContact:(CNMutableContact*)contact toContainerWithIdentifier:(nullable NSString*)identifier;
- (void)updateContact:(CNMutableContact*)contact;
@end

NS_ASSUME_NONNULL_END
