#pragma once

#import <Contacts/CNContact.h>

NS_ASSUME_NONNULL_BEGIN

@interface CNContactFetchRequest : NSObject
- (instancetype)initWithKeysToFetch:(NSArray<id<CNKeyDescriptor>>*)keysToFetch;
@property(nonatomic) BOOL unifyResults;
@end

NS_ASSUME_NONNULL_END
