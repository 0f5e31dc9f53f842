#pragma once

#import <EventKit/EKObject.h>
#import <EventKit/EKTypes.h>

NS_ASSUME_NONNULL_BEGIN

@interface EKParticipant : EKObject
@property(nonatomic, readonly) NSURL* URL;
@property(nonatomic, readonly, nullable) NSString* name;
@property(nonatomic, readonly) EKParticipantStatus participantStatus;
@property(nonatomic, readonly) EKParticipantRole participantRole;
@property(nonatomic, readonly) EKParticipantType participantType;
@property(nonatomic, readonly, getter=isCurrentUser) BOOL currentUser;
@end

NS_ASSUME_NONNULL_END
