// blocks: expects: a block captures 'this'
// The adapter may be gone when the store answers: of a member, a block keeps the object's address.
#import <EventKit/EventKit.h>

class ReminderCount {
public:
    void count(EKEventStore* store, NSPredicate* wanted) {
        [store fetchRemindersMatchingPredicate:wanted
                                    completion:^(NSArray<EKReminder*>* _Nullable reminders) {
                                      counted_ = reminders.count;
                                    }];
    }

private:
    NSUInteger counted_ = 0;
};
