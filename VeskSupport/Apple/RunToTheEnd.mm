#include "VeskSupport/RunToTheEnd.hpp"

#import <Foundation/Foundation.h>

#include "VeskSupport/ErrorRecord.hpp"
#include "VeskSupport/HostedExecution.hpp"

#include <asio/co_spawn.hpp>
#include <exception>
#include <utility>

namespace vesk {
namespace {

/// What the frameworks hand out while a block runs goes with it.
void runPooled(const HostedExecution::Block& block) {
    @autoreleasepool {
        block();
    }
}

void postToMainQueue(HostedExecution::Block block) {
    dispatch_async(dispatch_get_main_queue(), ^{
      runPooled(block);
    });
}

} // namespace

/// The main executor is the main dispatch queue, which the main run loop serves: web views, print operations and
/// consent prompts need that loop to turn while the task waits for them.
void runToTheEnd(Task<void> task) {
    bool ended = false;
    bool done = false;
    std::exception_ptr failure;
    HostedExecution execution(postToMainQueue, [&done] {
        done = true;
        CFRunLoopStop(CFRunLoopGetMain());
    });
    asio::co_spawn(execution.executor(), std::move(task), [&](std::exception_ptr thrown) {
        ended = true;
        failure = std::move(thrown);
    });
    while (!done) CFRunLoopRun(); // a framework may stop the loop for ends of its own
    if (!ended) throw ErrorRecord("VeskCapabilityBroker", 70, "The command ended without an answer.");
    if (failure) std::rethrow_exception(failure);
}

} // namespace vesk
