#pragma once

#import <Foundation/Foundation.h>

typedef NS_ENUM(NSInteger, EKAuthorizationStatus) {
    EKAuthorizationStatusNotDetermined = 0,
    EKAuthorizationStatusRestricted = 1,
    EKAuthorizationStatusDenied = 2,
    EKAuthorizationStatusFullAccess API_AVAILABLE(macos(14.0)) = 3,
    EKAuthorizationStatusWriteOnly API_AVAILABLE(macos(14.0)) = 4,
};

typedef NS_ENUM(NSUInteger, EKEntityType) {
    EKEntityTypeEvent = 0,
    EKEntityTypeReminder = 1,
};

typedef NS_ENUM(NSInteger, EKSpan) {
    EKSpanThisEvent = 0,
    EKSpanFutureEvents = 1,
};

typedef NS_ENUM(NSInteger, EKSourceType) {
    EKSourceTypeLocal = 0,
    EKSourceTypeExchange = 1,
    EKSourceTypeCalDAV = 2,
    EKSourceTypeMobileMe = 3,
    EKSourceTypeSubscribed = 4,
    EKSourceTypeBirthdays = 5,
};

typedef NS_ENUM(NSInteger, EKParticipantType) {
    EKParticipantTypeUnknown = 0,
    EKParticipantTypePerson = 1,
    EKParticipantTypeRoom = 2,
    EKParticipantTypeResource = 3,
    EKParticipantTypeGroup = 4,
};

typedef NS_ENUM(NSInteger, EKParticipantRole) {
    EKParticipantRoleUnknown = 0,
    EKParticipantRoleRequired = 1,
    EKParticipantRoleOptional = 2,
    EKParticipantRoleChair = 3,
    EKParticipantRoleNonParticipant = 4,
};

typedef NS_ENUM(NSInteger, EKParticipantStatus) {
    EKParticipantStatusUnknown = 0,
    EKParticipantStatusPending = 1,
    EKParticipantStatusAccepted = 2,
    EKParticipantStatusDeclined = 3,
    EKParticipantStatusTentative = 4,
    EKParticipantStatusDelegated = 5,
    EKParticipantStatusCompleted = 6,
    EKParticipantStatusInProcess = 7,
};
