// expects: implicit conversion loses integer precision: 'EKParticipantStatus'
// The framework's numbers are wider than the port's.
#import <EventKit/EventKit.h>

int statusOf(EKParticipant* participant) { return participant.participantStatus; }
