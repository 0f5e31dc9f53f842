#pragma once

#import <Foundation/NSArray.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSSet<__covariant ObjectType> : NSObject <NSCopying, NSSecureCoding, NSFastEnumeration>
@property(readonly) NSUInteger count;
+ (instancetype)set;
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained _Nullable[_Nonnull])buffer
                                    count:(NSUInteger)count;
@end

NS_ASSUME_NONNULL_END
