#pragma once

#import <AppKit/AppKitDefines.h>

NS_ASSUME_NONNULL_BEGIN

@class NSView;
@class NSWindow;

@interface NSPrintOperation : NSObject
@property(nullable, readonly, strong) NSView* view;
@property(nullable, copy) NSString* jobTitle;
@property BOOL showsPrintPanel;
@property BOOL showsProgressPanel;
@property BOOL canSpawnSeparateThread;
- (void)runOperationModalForWindow:(NSWindow*)window
                          delegate:(nullable id)delegate
                    didRunSelector:(nullable SEL)selector
                       contextInfo:(nullable void*)context;
@end

NS_ASSUME_NONNULL_END
