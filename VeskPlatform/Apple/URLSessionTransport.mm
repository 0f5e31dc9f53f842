#import "VeskPlatform/Apple/URLSessionTransport.hpp"

#import <Foundation/Foundation.h>

#import "VeskPlatform/Apple/FoundationErrors.hpp"
#import "VeskPlatform/Apple/FoundationValues.hpp"

#include "VeskSupport/ErrorRecord.hpp"
#include "VeskSupport/Text.hpp"

#include <atomic>

NS_ASSUME_NONNULL_BEGIN

namespace {

/// In a URL the letters of the scheme are of any case.
bool isHttps(NSURL* _Nullable url) { return [url.scheme.lowercaseString isEqualToString:@"https"]; }

} // namespace

/// Follows redirections but those that lead away from HTTPS.
@interface VeskRedirectionGuard : NSObject <NSURLSessionTaskDelegate>
@property(readonly) BOOL hasRefused;
@end

@implementation VeskRedirectionGuard {
    std::atomic<bool> _hasRefused;
}

- (BOOL)hasRefused {
    return _hasRefused;
}

- (void)URLSession:(NSURLSession*)session
                          task:(NSURLSessionTask*)task
    willPerformHTTPRedirection:(NSHTTPURLResponse*)response
                    newRequest:(NSURLRequest*)request
             completionHandler:(void (^)(NSURLRequest* _Nullable))completionHandler {
    const bool leavesHttps = isHttps(task.currentRequest.URL) && !isHttps(request.URL);
    if (leavesHttps) _hasRefused = true;
    completionHandler(leavesHttps ? nil : request);
}

@end

namespace vesk {
namespace {

/// What came of a task, once `ended` was signalled.
struct Exchange {
    dispatch_semaphore_t ended = dispatch_semaphore_create(0);
    NSData* _Nullable body = nil;
    NSURLResponse* _Nullable response = nil;
    NSError* _Nullable error = nil;
};

/// A failure without a text that holds more of the request than its host.
[[noreturn]] void fail(NSInteger code, const std::string& text, NSURL* _Nullable url) {
    const std::optional<std::string> host = optionalUtf8(url.host);
    throw ErrorRecord(utf8(NSURLErrorDomain), code, host ? text + " (" + *host + ")" : text);
}

[[noreturn]] void failOf(NSError* error, NSURL* url) {
    const NSInteger code = [error.domain isEqualToString:NSURLErrorDomain] ? error.code : NSURLErrorUnknown;
    fail(code, utf8(error.localizedDescription), url);
}

NSURL* urlOf(const HttpRequest& request) {
    NSURL* url = isWellFormedUtf8(request.url) ? [NSURL URLWithString:nsString(request.url)] : nil;
    if (url == nil) fail(NSURLErrorBadURL, "The URL is not valid.", nil);
    return known(url);
}

NSURLRequest* urlRequest(const HttpRequest& request, NSURL* url) {
    NSMutableURLRequest* made = [NSMutableURLRequest requestWithURL:url];
    made.HTTPMethod = nsString(request.method);
    made.timeoutInterval = std::chrono::duration<double>(request.timeout).count();
    for (const auto& [field, value] : request.headers)
        [made setValue:nsString(value) forHTTPHeaderField:nsString(field)];
    if (request.method != "GET" && request.method != "HEAD") made.HTTPBody = nsData(request.body);
    return made;
}

/// The session's own limit is for each pause between two pieces of the answer; this one is for all of it.
void waitForEnd(NSURLSessionTask* task, Exchange& exchange, std::chrono::milliseconds limit, NSURL* url) {
    const auto deadline = dispatch_time(DISPATCH_TIME_NOW, std::chrono::nanoseconds(limit).count());
    if (dispatch_semaphore_wait(exchange.ended, deadline) == 0) return;
    [task cancel];
    dispatch_semaphore_wait(exchange.ended, DISPATCH_TIME_FOREVER); // the handler is called for a cancelled task, too
    fail(NSURLErrorTimedOut, "The request timed out.", url);
}

std::optional<int> statusOf(NSURLResponse* _Nullable response) {
    if (![response isKindOfClass:[NSHTTPURLResponse class]]) return std::nullopt;
    return static_cast<int>(static_cast<NSHTTPURLResponse*>(known(response)).statusCode);
}

} // namespace

HttpResponse URLSessionTransport::send(const HttpRequest& request) {
    @autoreleasepool {
        NSURL* url = urlOf(request);
        const auto exchange = std::make_shared<Exchange>();
        VeskRedirectionGuard* redirections = [[VeskRedirectionGuard alloc] init];
        NSURLSessionDataTask* task = [NSURLSession.sharedSession
            dataTaskWithRequest:urlRequest(request, url)
              completionHandler:^(NSData* _Nullable data, NSURLResponse* _Nullable response, NSError* _Nullable error) {
                exchange->body = data;
                exchange->response = response;
                exchange->error = error;
                dispatch_semaphore_signal(exchange->ended);
              }];
        task.delegate = redirections;
        [task resume];
        waitForEnd(task, *exchange, request.timeout, url);
        if (redirections.hasRefused)
            fail(NSURLErrorAppTransportSecurityRequiresSecureConnection,
                 "The server redirected the request to an insecure connection.", url);
        if (exchange->error != nil) failOf(known(exchange->error), url);
        return {statusOf(exchange->response), exchange->body == nil ? "" : bytes(known(exchange->body))};
    }
}

std::string URLSessionTransport::standardText(int status) {
    @autoreleasepool {
        return utf8([NSHTTPURLResponse localizedStringForStatusCode:status]);
    }
}

} // namespace vesk

NS_ASSUME_NONNULL_END
