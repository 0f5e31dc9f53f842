#include "VeskShellCore/BootstrapState.hpp"
#include "tests/VeskShellCore/RecordTableWalk.hpp"

namespace vesk::test {

template <> RecordSample<BootstrapIssue> sampleOf() {
    return {.name = "BootstrapIssue",
            .record = {.code = "token_missing", .message = "No token was given."},
            .required = "code message"};
}

template <> RecordSample<BootstrapNextAction> sampleOf() {
    return {.name = "BootstrapNextAction",
            .record = {.code = "token_missing",
                       .title = "Give a token",
                       .detail = "The bot needs a token.",
                       .command = "vesk settings",
                       .blocking = true},
            .required = "code title detail command blocking"};
}

template <> RecordSample<BootstrapDirectoryState> sampleOf() {
    return {.name = "BootstrapDirectoryState",
            .record = {.path = "/home/dana/.vesk/data", .exists = true},
            .required = "path exists"};
}

template <> RecordSample<BootstrapRequiredPlatformToolState> sampleOf() {
    return {.name = "BootstrapRequiredPlatformToolState",
            .record = {.name = "browser-driver",
                       .version = "1.2",
                       .required = true,
                       .installed = false,
                       .browserRequired = true,
                       .browserReady = false,
                       .binaryPath = "/opt/bin/driver",
                       .browserExecutablePath = "/opt/bin/browser"},
            .required = "name version required installed browserRequired",
            .optional = "browserReady binaryPath browserExecutablePath",
            .booleans = {{"required", &BootstrapRequiredPlatformToolState::required},
                         {"installed", &BootstrapRequiredPlatformToolState::installed},
                         {"browserRequired", &BootstrapRequiredPlatformToolState::browserRequired},
                         {"browserReady", &BootstrapRequiredPlatformToolState::browserReady}}};
}

template <> RecordSample<BootstrapOnboardingStep> sampleOf() {
    return {.name = "BootstrapOnboardingStep",
            .record = {.id = "telegram", .title = "Telegram", .ready = true, .issueCodes = {"token_missing"}},
            .required = "id title ready issueCodes"};
}

using AllRecords = testing::Types<BootstrapIssue, BootstrapNextAction, BootstrapDirectoryState,
                                  BootstrapRequiredPlatformToolState, BootstrapOnboardingStep>;
INSTANTIATE_TYPED_TEST_SUITE_P(BootstrapState, RecordTable, AllRecords, RecordNames);

} // namespace vesk::test
