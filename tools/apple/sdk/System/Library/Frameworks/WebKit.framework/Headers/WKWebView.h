#pragma once

#import <WebKit/WKFoundation.h>

NS_ASSUME_NONNULL_BEGIN

@class WKNavigation;
@class WKWebViewConfiguration;
@protocol WKNavigationDelegate;

@interface WKWebView : NSView
@property(nullable, nonatomic, weak) id<WKNavigationDelegate> navigationDelegate;
- (instancetype)initWithFrame:(CGRect)frame
                configuration:(WKWebViewConfiguration*)configuration NS_DESIGNATED_INITIALIZER;
- (nullable WKNavigation*)loadHTMLString:(NSString*)document baseURL:(nullable NSURL*)base;
- (NSPrintOperation*)printOperationWithPrintInfo:(NSPrintInfo*)info API_AVAILABLE(macos(11.0));
@end

NS_ASSUME_NONNULL_END
