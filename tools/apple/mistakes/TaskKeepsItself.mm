// expects: capturing 'task' strongly in this block is likely to lead to a retain cycle
// A program's handler that holds the program is never let go.
#import <Foundation/Foundation.h>

void reportEnd(NSTask* task, void (*report)(int status)) {
    task.terminationHandler = ^(NSTask* ended) {
      (void)ended;
      report(task.terminationStatus);
    };
}
