#include "VeskPlatform/Linux/Secrets/SecretServiceKeychain.hpp"
#include "tests/contracts/KeychainContract.hpp"
#include "tests/support/PrivateKeyring.hpp"

namespace vesk::test {
namespace {

struct KeyringWorld {
    PrivateKeyring keyring;
    SecretServiceKeychain keychain{{.canPrompt = {}, .log = {}}};
    KeychainItems& items() { return keychain; }
};

using Worlds = ::testing::Types<KeyringWorld>;
INSTANTIATE_TYPED_TEST_SUITE_P(SecretService, KeychainContract, Worlds);

} // namespace
} // namespace vesk::test
