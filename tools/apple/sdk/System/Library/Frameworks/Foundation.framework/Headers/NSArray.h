#pragma once

#import <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

/// The state of a `for (… in …)`.
typedef struct {
    unsigned long state;
    id __unsafe_unretained _Nullable* _Nullable itemsPtr;
    unsigned long* _Nullable mutationsPtr;
    unsigned long extra[5];
} NSFastEnumerationState;

@interface NSArray<__covariant ObjectType> : NSObject <NSCopying, NSSecureCoding, NSFastEnumeration>
@property(readonly) NSUInteger count;
- (ObjectType)objectAtIndex:(NSUInteger)index;
- (ObjectType)objectAtIndexedSubscript:(NSUInteger)index;
@property(nullable, nonatomic, readonly) ObjectType firstObject;
@property(nullable, nonatomic, readonly) ObjectType lastObject;
+ (instancetype)array;
+ (instancetype)arrayWithObject:(ObjectType)object;
+ (instancetype)arrayWithObjects:(const ObjectType _Nonnull[_Nullable])objects count:(NSUInteger)count;
- (NSArray<ObjectType>*)arrayByAddingObject:(ObjectType)object;
- (BOOL)containsObject:(ObjectType)object;
- (NSArray<ObjectType>*)arrayByAddingObjectsFromArray:(NSArray<ObjectType>*)others;
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained _Nullable[_Nonnull])buffer
                                    count:(NSUInteger)count;
@end

@interface NSMutableArray<ObjectType> : NSArray <ObjectType>
+ (instancetype)arrayWithCapacity:(NSUInteger)capacity;
- (void)addObject:(ObjectType)object;
@end

NS_ASSUME_NONNULL_END
