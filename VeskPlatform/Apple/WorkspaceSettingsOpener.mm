#include "VeskPlatform/Apple/WorkspaceSettingsOpener.hpp"

#include "VeskPlatform/Apple/FinishedTask.hpp"
#import "VeskPlatform/Apple/FoundationValues.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#import <AppKit/AppKit.h>

namespace vesk {

bool WorkspaceSettingsOpener::launchOpener(const std::string& url) {
    try {
        startTask("/usr/bin/open", {url});
        return true;
    } catch (const ErrorRecord&) {
        return false;
    }
}

void WorkspaceSettingsOpener::openUrl(const std::string& url) {
    NSURL* target = [NSURL URLWithString:nsString(url)];
    if (target != nil) [NSWorkspace.sharedWorkspace openURL:target];
}

} // namespace vesk
