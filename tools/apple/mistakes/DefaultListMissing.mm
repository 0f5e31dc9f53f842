// expects: implicit conversion from nullable pointer 'EKCalendar
// There may be no list that new to-dos go to.
#import <EventKit/EventKit.h>

BOOL renameDefaultList(EKEventStore* store) {
    return [store saveCalendar:[store defaultCalendarForNewReminders] commit:YES error:nil];
}
