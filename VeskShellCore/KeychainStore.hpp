#pragma once

#include "VeskPlatform/KeychainItems.hpp"

#include <array>
#include <optional>
#include <string>
#include <utility>

namespace vesk {

/// The accounts that secrets have in the keychain, in the runtime's settings and in archives.
namespace KeychainAccount {
inline constexpr const char* telegramBotToken = "TELEGRAM_BOT_TOKEN";
inline constexpr const char* veskAuthToken = "VESK_AUTH_TOKEN";
inline constexpr const char* veskMobileRelayToken = "VESK_MOBILE_RELAY_TOKEN";
inline constexpr const char* openAIAPIKey = "OPENAI_API_KEY";
inline constexpr const char* openRouterAPIKey = "OPENROUTER_API_KEY";
inline constexpr const char* anthropicAPIKey = "ANTHROPIC_API_KEY";
inline constexpr const char* zaiAPIKey = "ZAI_API_KEY";
inline constexpr const char* firecrawlAPIKey = "FIRECRAWL_API_KEY";
inline constexpr const char* resendAPIKey = "RESEND_API_KEY";
inline constexpr const char* veskSearchAPIKey = "VESK_SEARCH_API_KEY";
/// The sign-in grant that is being redeemed. It is worth nothing afterwards, so that no archive holds it.
inline constexpr const char* veskAuthRedeemGrant = "VESK_AUTH_REDEEM_GRANT";
} // namespace KeychainAccount

/// The accounts that an archive may hold, in its order.
inline constexpr std::array<const char*, 10> archivedKeychainAccounts{
    KeychainAccount::telegramBotToken, KeychainAccount::veskAuthToken,    KeychainAccount::veskMobileRelayToken,
    KeychainAccount::openAIAPIKey,     KeychainAccount::openRouterAPIKey, KeychainAccount::anthropicAPIKey,
    KeychainAccount::zaiAPIKey,        KeychainAccount::firecrawlAPIKey,  KeychainAccount::resendAPIKey,
    KeychainAccount::veskSearchAPIKey};

/// The service of the live installation.
inline constexpr const char* liveKeychainService = "Vesk";

/// The secrets of one service as text. White space around an account counts for nothing, and a blank account names
/// nothing: no call then reaches the keychain. Failures are `VeskShellError::keychainError`, with the keychain's status
/// and never with a secret. Blocking; safe from any thread.
class KeychainStore {
public:
    KeychainStore(KeychainItems& items, std::string service) : items_(items), service_(std::move(service)) {}

    const std::string& service() const { return service_; }

    /// Stores `secret` less white space at its ends, also an empty one. What is there keeps all but its bytes. Of two
    /// racing writers of a new account one may fail with the status of a duplicate.
    void upsert(const std::string& account, const std::string& secret) const;
    /// As it is stored; none where nothing is.
    std::optional<std::string> read(const std::string& account) const;
    /// Removing what is not there is no failure.
    void remove(const std::string& account) const;

private:
    KeychainItems& items_;
    std::string service_;
};

} // namespace vesk
