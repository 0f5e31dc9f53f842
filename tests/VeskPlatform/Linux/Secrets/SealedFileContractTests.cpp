#include "VeskPlatform/Linux/Secrets/SealedFileKeychain.hpp"
#include "tests/contracts/KeychainContract.hpp"
#include "tests/fakes/FakeKeychain.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <sys/stat.h>

namespace vesk::test {
namespace {

struct FakeWorld {
    FakeKeychain keychain;
    KeychainItems& items() { return keychain; }
};

struct KeyFileWorld {
    TemporaryFolder folder;
    SealedFileKeychain keychain{{.folder = folder / "state", .passphraseFile = {}, .log = {}}};
    KeychainItems& items() { return keychain; }
};

std::string privateFile(const std::string& path) {
    ::chmod(path.c_str(), 0600);
    return path;
}

struct PassphraseWorld {
    TemporaryFolder folder;
    SealedFileKeychain keychain{{.folder = folder / "state",
                                 .passphraseFile = privateFile(folder.write("passphrase", "a passphrase\n")),
                                 .log = {}}};
    KeychainItems& items() { return keychain; }
};

using Worlds = ::testing::Types<FakeWorld, KeyFileWorld, PassphraseWorld>;
INSTANTIATE_TYPED_TEST_SUITE_P(Files, KeychainContract, Worlds);

} // namespace
} // namespace vesk::test
