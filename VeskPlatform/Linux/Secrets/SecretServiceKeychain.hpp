#pragma once

#include "VeskPlatform/Linux/Secrets/SecretService.hpp"

#include <memory>
#include <mutex>

namespace vesk {

class SecretServiceLink;

/// Through libsecret. Items that hold more attributes than ours are found too, and items of one account are removed
/// together, as programs such as secret-tool do it.
class SecretServiceKeychain : public SecretService {
public:
    explicit SecretServiceKeychain(SecretServiceOptions options);
    ~SecretServiceKeychain() override;

    SecretServicePresence presence() override;
    SecretServicePresence reach() override;
    SecretServiceState state() override;
    std::int32_t update(const std::string& service, const std::string& account, std::string_view bytes) override;
    std::int32_t add(const std::string& service, const std::string& account, std::string_view bytes) override;
    Copied copy(const std::string& service, const std::string& account) override;
    std::int32_t find(const std::string& service, const std::string& account) override;
    std::int32_t remove(const std::string& service, const std::string& account) override;
    std::int32_t removeAll(const std::string& service) override;

private:
    template <class Body> std::int32_t run(const Body& body);
    /// Throws KeychainFailure where the bus cannot be reached.
    SecretServiceLink& link();

    SecretServiceOptions options_;
    std::mutex lock_;
    std::unique_ptr<SecretServiceLink> link_;
};

} // namespace vesk
