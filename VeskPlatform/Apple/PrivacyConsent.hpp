#pragma once

#include "VeskPlatform/Consent.hpp"

namespace vesk {

/// The consent that the system keeps for this program. Each request makes a store of its own to ask with.
class PrivacyConsent : public Consent {
public:
    AuthorizationStatus authorizationStatus(PrivacyService service) override;
    bool preflightScreenCapture() override;
    bool isProcessTrusted() override;
    Task<AccessAnswer> requestAccess(PrivacyService service) override;
    Task<void> requestScreenCapture() override;
    Task<void> promptForProcessTrust() override;
};

} // namespace vesk
