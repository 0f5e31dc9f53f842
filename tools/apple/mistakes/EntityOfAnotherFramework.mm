// expects: cannot initialize a parameter of type 'EKEntityType'.* 'CNEntityType'
// Two frameworks count their kinds of data from zero: asking one for the other's would silently ask for events.
#import <Contacts/Contacts.h>
#import <EventKit/EventKit.h>

long statusOfContacts() { return [EKEventStore authorizationStatusForEntityType:CNEntityTypeContacts]; }
