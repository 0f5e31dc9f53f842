// expects: undeclared selector 'printOperationDidRun:succes:contextInfo:'
// The print system would call what nobody has, after the document is printed.
#import <AppKit/AppKit.h>

@interface PrintEnd : NSObject
- (void)printOperationDidRun:(NSPrintOperation*)operation success:(BOOL)success contextInfo:(void*)context;
@end

void run(NSPrintOperation* operation, NSWindow* window, PrintEnd* end) {
    [operation runOperationModalForWindow:window
                                 delegate:end
                           didRunSelector:@selector(printOperationDidRun:succes:contextInfo:)
                              contextInfo:nil];
}
