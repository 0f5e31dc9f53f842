#include "VeskPlatform/Apple/AppleEventAutomation.hpp"

#include "VeskPlatform/Apple/FinishedTask.hpp"
#import "VeskPlatform/Apple/FoundationValues.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#import <AppKit/AppKit.h>
#import <CoreServices/CoreServices.h>
#import <Foundation/Foundation.h>

namespace vesk {
namespace {

/// The event that consent is asked for, the one by which values are read.
constexpr AEEventClass eventClass = 'core';
constexpr AEEventID eventIdentifier = 'getd';
static_assert(eventClass == kAECoreSuite && eventIdentifier == kAEGetData);
static_assert(automationPermitted == noErr && automationTargetNotFound == procNotFound
              && automationRefused == errAEEventNotPermitted
              && automationUndecided == errAEEventWouldRequireUserConsent);

enum class UserPrompt { never, ifUndecided };

std::optional<AutomationResult> determinedPermission(const std::string& bundleIdentifier, UserPrompt prompt) {
    // Its description lies within it, so it is not let go of after its last use.
    NS_VALID_UNTIL_END_OF_SCOPE NSAppleEventDescriptor* target =
        [NSAppleEventDescriptor descriptorWithBundleIdentifier:nsString(bundleIdentifier)];
    const AEDesc* description = target.aeDesc;
    if (description == nullptr) return std::nullopt;
    return AEDeterminePermissionToAutomateTarget(description, eventClass, eventIdentifier,
                                                 prompt == UserPrompt::ifUndecided);
}

} // namespace

bool AppleEventAutomation::isInstalled(const std::string& bundleIdentifier) {
    return [NSWorkspace.sharedWorkspace URLForApplicationWithBundleIdentifier:nsString(bundleIdentifier)] != nil;
}

bool AppleEventAutomation::isRunning(const std::string& bundleIdentifier) {
    return [NSRunningApplication runningApplicationsWithBundleIdentifier:nsString(bundleIdentifier)].count > 0;
}

void AppleEventAutomation::launchAndWait(const ApplicationLaunch& launch) {
    if (launch.command.empty()) return;
    try {
        exitStatusOfTask(launch.command.front(), {launch.command.begin() + 1, launch.command.end()});
    } catch (const ErrorRecord&) { // the application stays down, as the next question about it tells
    }
}

std::optional<AutomationResult> AppleEventAutomation::permission(const std::string& bundleIdentifier) {
    return determinedPermission(bundleIdentifier, UserPrompt::never);
}

Task<std::optional<AutomationResult>> AppleEventAutomation::requestPermission(std::string bundleIdentifier) {
    co_return determinedPermission(bundleIdentifier, UserPrompt::ifUndecided);
}

} // namespace vesk
