// expects: 'isWritingToolsActive' is only available on macOS 15.0 or newer
// The programs run on macOS 14, which does not have this.
#import <WebKit/WebKit.h>

@interface WKWebView (Writing)
@property(nonatomic, readonly, getter=isWritingToolsActive) BOOL writingToolsActive API_AVAILABLE(macos(15.0));
@end

BOOL isWriting(WKWebView* view) { return view.writingToolsActive; }
