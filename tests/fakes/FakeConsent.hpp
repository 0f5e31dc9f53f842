#pragma once

#include "VeskPlatform/Consent.hpp"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace vesk::test {

/// Consent with a user who answers as told; records each request in order, and each probe if asked to.
class FakeConsent : public Consent {
public:
    std::map<PrivacyService, AuthorizationStatus> statuses{{PrivacyService::microphone, 0},
                                                           {PrivacyService::events, 0},
                                                           {PrivacyService::reminders, 0},
                                                           {PrivacyService::contacts, 0}};
    bool screenCapture = false;
    bool processTrusted = false;
    /// What a prompt returns, and the state that it leaves behind (none: unchanged).
    AccessAnswer answer;
    std::optional<AuthorizationStatus> statusAfterAnswer;
    std::function<void()> onPrompt;
    /// "access 1", "screen", "trust"; the number is the service's.
    std::vector<std::string> requests;

    AuthorizationStatus authorizationStatus(PrivacyService service) override { return statuses.at(service); }
    bool preflightScreenCapture() override { return screenCapture; }
    bool isProcessTrusted() override { return processTrusted; }

    Task<AccessAnswer> requestAccess(PrivacyService service) override {
        record("access " + std::to_string(static_cast<int>(service)));
        if (statusAfterAnswer) statuses[service] = *statusAfterAnswer;
        co_return answer;
    }
    Task<void> requestScreenCapture() override {
        record("screen");
        co_return;
    }
    Task<void> promptForProcessTrust() override {
        record("trust");
        co_return;
    }

private:
    void record(std::string request) {
        requests.push_back(std::move(request));
        if (onPrompt) onPrompt();
    }
};

} // namespace vesk::test
