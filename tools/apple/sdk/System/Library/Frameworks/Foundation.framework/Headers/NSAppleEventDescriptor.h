#pragma once

#import <CoreServices/CoreServices.h>
#import <Foundation/NSObject.h>
#import <Foundation/NSString.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSAppleEventDescriptor : NSObject
+ (NSAppleEventDescriptor*)descriptorWithBundleIdentifier:(NSString*)bundleIdentifier;
/// The structure inside; it lives as long as the descriptor.
@property(nullable, readonly) const AEDesc* aeDesc NS_RETURNS_INNER_POINTER;
@property(readonly) DescType descriptorType;
@property(nullable, readonly, copy) NSString* stringValue;
@property(readonly) NSInteger numberOfItems;
/// Counted from 1.
- (nullable NSAppleEventDescriptor*)descriptorAtIndex:(NSInteger)index;
@end

NS_ASSUME_NONNULL_END
