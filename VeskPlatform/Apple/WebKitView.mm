#include "VeskPlatform/Apple/WebKitView.hpp"

#include "VeskPlatform/Apple/FoundationErrors.hpp"
#include "VeskPlatform/Apple/FoundationValues.hpp"
#include "VeskPlatform/Apple/WebKitPrintInfo.hpp"

#import <AppKit/AppKit.h>

#include <exception>
#include <string_view>
#include <utility>

NS_ASSUME_NONNULL_BEGIN

/// Passes the end of a print operation on, once. The operation does not hold its delegate, so it holds itself until
/// then.
@interface VeskPrintDelegate : NSObject
@property(nonatomic, nullable) vesk::WebPrintDelegate* target;
@property(nonatomic, nullable) VeskPrintDelegate* whileRunning;
- (void)endWithSuccess:(BOOL)success;
@end

@implementation VeskPrintDelegate

- (void)printOperationDidRun:(NSPrintOperation*)operation success:(BOOL)success contextInfo:(nullable void*)context {
    VeskPrintDelegate* const kept = self.whileRunning;
    self.whileRunning = nil;
    [kept endWithSuccess:success];
}

- (void)endWithSuccess:(BOOL)success {
    vesk::WebPrintDelegate* const heard = self.target;
    self.target = nullptr;
    if (heard != nullptr) heard->printOperationDidRun(success);
}

@end

/// Passes the end of a navigation on to the port's delegate, as long as the view lives.
@interface VeskNavigationDelegate : NSObject <WKNavigationDelegate>
@property(nonatomic, nullable) vesk::WebNavigationDelegate* target;
@property(nonatomic, nullable, weak) VeskPrintDelegate* printing;
@end

@implementation VeskNavigationDelegate

- (void)webView:(WKWebView*)view didFinishNavigation:(null_unspecified WKNavigation*)navigation {
    if (self.target != nullptr) self.target->didFinishNavigation();
}

- (void)webView:(WKWebView*)view
    didFailNavigation:(null_unspecified WKNavigation*)navigation
            withError:(NSError*)error {
    [self fail:error];
}

- (void)webView:(WKWebView*)view
    didFailProvisionalNavigation:(null_unspecified WKNavigation*)navigation
                       withError:(NSError*)error {
    [self fail:error];
}

/// The engine crashed or ran out of memory. Nothing else may tell so, and a load or a print would be waited for without
/// end.
- (void)webViewWebContentProcessDidTerminate:(WKWebView*)view {
    [self fail:[NSError errorWithDomain:WKErrorDomain code:WKErrorWebContentProcessTerminated userInfo:nil]];
    [self.printing endWithSuccess:NO];
}

- (void)fail:(NSError*)error {
    if (self.target != nullptr) self.target->didFailNavigation(std::make_exception_ptr(vesk::errorRecord(error)));
}

@end

NS_ASSUME_NONNULL_END

namespace vesk {

namespace {

static_assert(NSWindowStyleMaskBorderless == 0 && NSBackingStoreBuffered == 2);

WKWebViewConfiguration* closedConfiguration(WKContentRuleList* rules) {
    WKWebViewConfiguration* configuration = [[WKWebViewConfiguration alloc] init];
    configuration.websiteDataStore = [WKWebsiteDataStore nonPersistentDataStore];
    configuration.defaultWebpagePreferences.allowsContentJavaScript = NO;
    configuration.preferences.shouldPrintBackgrounds = YES;
    [configuration.userContentController addContentRuleList:rules];
    return configuration;
}

NSWindow* hiddenWindow(NSRect frame) {
    NSWindow* window = [[NSWindow alloc] initWithContentRect:frame
                                                   styleMask:NSWindowStyleMaskBorderless
                                                     backing:NSBackingStoreBuffered
                                                       defer:NO];
    window.releasedWhenClosed = NO;
    return window;
}

} // namespace

WebKitView::WebKitView(double width, double height, WKContentRuleList* rules)
    : webView_([[WKWebView alloc] initWithFrame:NSMakeRect(0, 0, width, height)
                                  configuration:closedConfiguration(rules)]),
      window_(hiddenWindow(NSMakeRect(0, 0, width, height))), navigation_([[VeskNavigationDelegate alloc] init]) {
    window_.contentView = webView_;
    webView_.navigationDelegate = navigation_;
}

WebKitView::~WebKitView() {
    navigation_.target = nullptr;
    print_.target = nullptr;
    webView_.navigationDelegate = nil;
    window_.contentView = nil;
    [window_ close];
}

void WebKitView::loadHtml(std::string document, WebNavigationDelegate& delegate) {
    NSString* text = nsString(std::string_view(document));
    navigation_.target = &delegate;
    [webView_ loadHTMLString:text baseURL:nil];
}

void WebKitView::runPrintOperation(WebPrintJob job, WebPrintDelegate& delegate) {
    NSPrintOperation* operation = [webView_ printOperationWithPrintInfo:printInfo(job)];
    // The view that draws the pages begins without a size, which the print system complains of on standard error.
    operation.view.frame = NSMakeRect(0, 0, job.paperWidth, job.paperHeight);
    operation.jobTitle = job.jobTitle ? nsString(std::string_view(*job.jobTitle)) : nil;
    operation.showsPrintPanel = NO;
    operation.showsProgressPanel = NO;
    operation.canSpawnSeparateThread = YES;
    print_ = [[VeskPrintDelegate alloc] init];
    print_.target = &delegate;
    print_.whileRunning = print_;
    navigation_.printing = print_;
    [operation runOperationModalForWindow:window_
                                 delegate:print_
                           didRunSelector:@selector(printOperationDidRun:success:contextInfo:)
                              contextInfo:nullptr];
}

} // namespace vesk
