#pragma once

#include "VeskPlatform/KeychainItems.hpp"

namespace vesk {

/// Generic passwords of the user's keychain. No attribute is set but service, account and bytes.
class SecurityKeychainItems : public KeychainItems {
public:
    std::int32_t update(const std::string& service, const std::string& account, std::string_view bytes) override;
    std::int32_t add(const std::string& service, const std::string& account, std::string_view bytes) override;
    Copied copy(const std::string& service, const std::string& account) override;
    std::int32_t find(const std::string& service, const std::string& account) override;
    std::int32_t remove(const std::string& service, const std::string& account) override;
    std::int32_t removeAll(const std::string& service) override;
};

} // namespace vesk
