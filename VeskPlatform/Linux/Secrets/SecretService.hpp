#pragma once

#include "VeskPlatform/KeychainItems.hpp"

#include <chrono>
#include <functional>
#include <optional>
#include <string>

namespace vesk {

struct SecretServiceOptions {
    /// Whether the user could be shown a question now; asked only where one would be.
    std::function<bool()> canPrompt;
    /// One line for the diagnostic log.
    std::function<void(const std::string& message)> log;
    /// How long a call may take in all, and one in which the user is asked.
    std::chrono::milliseconds patience{5000}, promptPatience{60'000};
};

enum class SecretServicePresence {
    /// No session bus, or nothing on it has the name or would be started for it.
    absent,
    present,
    /// The bus does not answer.
    unknown
};

/// What the doctor tells of the service; nobody is asked anything for it.
struct SecretServiceState {
    /// Such as "gnome-keyring-d", the program behind it; empty where it is not running.
    std::string program;
    /// Of the collection for new secrets; none where there is no collection yet.
    std::optional<bool> isLocked;
    /// Why it could not be asked, a sentence.
    std::string trouble;
};

/// Secrets in the Secret Service of the session (freedesktop.org, Secret Service 0.2): items with the attributes
/// `service` and `account` and no others.
class SecretService : public KeychainItems {
public:
    /// Starts nothing.
    virtual SecretServicePresence presence() = 0;
    /// The same for a caller that means to use the service: it is started where it is not running, and asking for it
    /// costs no wait of its own.
    virtual SecretServicePresence reach() = 0;
    /// Starts nothing.
    virtual SecretServiceState state() = 0;
};

/// `veskSecretService` in the module `secrets`, which makes an object that the caller owns.
using SecretServiceFactory = SecretService*(SecretServiceOptions options);

} // namespace vesk
