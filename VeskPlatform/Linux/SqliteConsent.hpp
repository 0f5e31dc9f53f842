#pragma once

#include "VeskPlatform/Consent.hpp"
#include "VeskPlatform/Linux/ConsentDatabase.hpp"

#include <functional>
#include <memory>
#include <utility>

namespace asio {
class thread_pool;
}

namespace vesk {

class Clock;
class ConsentPrompt;

/// Title and short summary of a capability, by its identifier.
using DescribeCapability = std::function<std::pair<std::string, std::string>(const std::string& capabilityId)>;

/// The row of the database that decides about a capability: system audio is screen recording's, any other its own.
std::string consentRow(const std::string& capabilityId);

/// Consent kept in a database and asked of the user. A probe of a database that cannot be used answers -1 or false.
/// Once a probe has waited in vain, the next ones do not wait: a report has many of them.
/// Only an undecided capability is asked about; the question waits on a thread of its own while the caller suspends.
class SqliteConsent : public Consent {
public:
    SqliteConsent(ConsentDatabase database, ConsentPrompt& prompt, Clock& clock, DescribeCapability describe);
    ~SqliteConsent() override;

    /// The same probe and request by row, for the services that have no verb of their own.
    AuthorizationStatus statusOf(const std::string& row);
    Task<AccessAnswer> requestRow(std::string row);

    AuthorizationStatus authorizationStatus(PrivacyService service) override;
    bool preflightScreenCapture() override;
    bool isProcessTrusted() override;
    Task<AccessAnswer> requestAccess(PrivacyService service) override;
    Task<void> requestScreenCapture() override;
    Task<void> promptForProcessTrust() override;

private:
    /// Asks and stores; on the thread.
    Task<AccessAnswer> askAndStore(std::string row);

    ConsentDatabase database_;
    ConsentPrompt& prompt_;
    Clock& clock_;
    DescribeCapability describe_;
    bool waitedInVain_ = false;
    std::unique_ptr<asio::thread_pool> thread_;
};

} // namespace vesk
