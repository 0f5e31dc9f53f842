#pragma once

#include "VeskPlatform/Linux/Secrets/SealingKey.hpp"

#include <memory>
#include <string>

namespace vesk {

/// What the key of a store is made of.
enum class SealingKeyKind { keyFile, passphrase };

/// The two files that a key may come from. Functions throw KeychainFailure and never tell what the files hold.
class SealingKeySource {
public:
    /// `passphraseFile` is empty where the user named none.
    SealingKeySource(std::string keyFile, std::string passphraseFile)
        : keyFile_(std::move(keyFile)), passphraseFile_(std::move(passphraseFile)) {}

    /// The passphrase where one is named.
    SealingKeyKind kindOfNewStore() const;
    /// The first line of the passphrase file. `locked` where there is none.
    std::unique_ptr<SealingKey> keyOfPassphrase(const PassphraseCost& cost) const;
    /// `decode` where the file is gone or was cut: what it sealed stays sealed.
    std::unique_ptr<SealingKey> keyOfFile() const;
    /// Makes the key file where there is none yet, whole and written through or not at all. Only for a caller that
    /// keeps other processes from doing the same.
    void makeKeyFile() const;

private:
    std::string keyFile_, passphraseFile_;
};

} // namespace vesk
