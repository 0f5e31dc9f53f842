#include "VeskPlatform/Apple/WorkspaceRunningApplications.hpp"

#include "VeskPlatform/Apple/FinishedTask.hpp"
#include "VeskPlatform/Apple/FoundationValues.hpp"
#include "VeskSupport/DetachedWork.hpp"

#import <AppKit/AppKit.h>

#include <functional>
#include <utility>

namespace vesk {

namespace {

constexpr const char* opener = "/usr/bin/open";
constexpr auto withoutUserInterface = static_cast<NSApplicationActivationPolicy>(2);
constexpr auto allWindows = static_cast<NSApplicationActivationOptions>(1);

static_assert(withoutUserInterface == NSApplicationActivationPolicyProhibited);
static_assert(allWindows == NSApplicationActivateAllWindows);

RunningApplication describe(NSRunningApplication* application) {
    return {.processIdentifier = application.processIdentifier,
            .bundleIdentifier = optionalUtf8(application.bundleIdentifier),
            .localizedName = optionalUtf8(application.localizedName),
            .bundlePath = optionalUtf8(application.bundleURL.path),
            .isTerminated = application.terminated,
            .hasUserInterface = application.activationPolicy != withoutUserInterface};
}

} // namespace

std::vector<RunningApplication> WorkspaceRunningApplications::list() {
    std::vector<RunningApplication> applications;
    for (NSRunningApplication* application in NSWorkspace.sharedWorkspace.runningApplications)
        applications.push_back(describe(application));
    return applications;
}

std::optional<RunningApplication> WorkspaceRunningApplications::frontmost() {
    NSRunningApplication* application = NSWorkspace.sharedWorkspace.frontmostApplication;
    if (application == nil) return std::nullopt;
    return describe(application);
}

/// One that is gone accepts nothing.
bool WorkspaceRunningApplications::activate(const RunningApplication& application) {
    NSRunningApplication* running =
        [NSRunningApplication runningApplicationWithProcessIdentifier:application.processIdentifier];
    return [running activateWithOptions:allWindows];
}

Task<int> WorkspaceRunningApplications::runOpener(std::vector<std::string> arguments) {
    std::function<int()> work = [arguments = std::move(arguments)] { return finishedTask(opener, arguments).status; };
    auto opening = onThreadOfItsOwn<int>(std::move(work));
    co_return co_await std::move(opening);
}

} // namespace vesk
