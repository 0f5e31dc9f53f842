#include "VeskPlatform/Linux/Secrets/SecretServiceKeychain.hpp"

#include <utility>

/// A SecretServiceFactory.
extern "C" __attribute__((visibility("default"))) vesk::SecretService*
veskSecretService(vesk::SecretServiceOptions options) {
    return new vesk::SecretServiceKeychain(std::move(options));
}
