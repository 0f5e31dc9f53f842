#pragma once

#import <EventKit/EKObject.h>
#import <EventKit/EKTypes.h>

NS_ASSUME_NONNULL_BEGIN

@interface EKSource : EKObject
@property(nonatomic, readonly) NSString* sourceIdentifier;
@property(nonatomic, readonly) EKSourceType sourceType;
@property(nonatomic, readonly) NSString* title;
@end

NS_ASSUME_NONNULL_END
