#pragma once

#include "VeskSupport/Task.hpp"

#include <optional>
#include <string>

namespace vesk {

/// The services that know more states than yes and no.
enum class PrivacyService { microphone, events, reminders, contacts };

/// Authorization numbers: 0 not determined, 1 restricted, 2 denied, 3 granted in full, 4 granted in part (write only,
/// limited). Any other number is a state that the platform could not tell.
using AuthorizationStatus = int;

struct AccessAnswer {
    bool granted = false;
    std::optional<std::string> error;
};

/// The user's consent to what the assistant may do. Called on the main executor, one call at a time.
/// The probes never prompt, never fail and read afresh each time. The requests may wait for the user as long as it
/// takes, resume the caller exactly once, and decide nothing where nobody can be asked.
class Consent {
public:
    virtual ~Consent() = default;

    virtual AuthorizationStatus authorizationStatus(PrivacyService service) = 0;
    virtual bool preflightScreenCapture() = 0;
    virtual bool isProcessTrusted() = 0;

    virtual Task<AccessAnswer> requestAccess(PrivacyService service) = 0;
    virtual Task<void> requestScreenCapture() = 0;
    /// The accessibility probe with its prompt.
    virtual Task<void> promptForProcessTrust() = 0;
};

} // namespace vesk
