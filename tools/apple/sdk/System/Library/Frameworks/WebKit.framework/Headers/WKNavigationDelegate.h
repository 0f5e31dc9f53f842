#pragma once

#import <WebKit/WKFoundation.h>

NS_ASSUME_NONNULL_BEGIN

@class WKNavigation;
@class WKWebView;

@protocol WKNavigationDelegate <NSObject>
@optional
- (void)webView:(WKWebView*)view
    didFailProvisionalNavigation:(null_unspecified WKNavigation*)navigation
                       withError:(NSError*)error;
- (void)webView:(WKWebView*)view didFinishNavigation:(null_unspecified WKNavigation*)navigation;
- (void)webView:(WKWebView*)view didFailNavigation:(null_unspecified WKNavigation*)navigation withError:(NSError*)error;
- (void)webViewWebContentProcessDidTerminate:(WKWebView*)view API_AVAILABLE(macos(10.11));
@end

NS_ASSUME_NONNULL_END
