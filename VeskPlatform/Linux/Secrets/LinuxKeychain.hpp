#pragma once

#include "VeskPlatform/Linux/Secrets/SealedFileKeychain.hpp"
#include "VeskPlatform/Linux/Secrets/SecretService.hpp"

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace vesk {

class Environment;

struct LinuxKeychainOptions {
    /// As in AdapterModule.
    std::string moduleFolder;
    /// Whether the environment names a session bus: without one, the module need not be loaded.
    bool namesSessionBus = false;
    SecretServiceOptions service;
    SealedFileOptions file;
};

/// What the doctor tells of the user's secrets: the store that serves now, and what it told.
struct KeychainSurvey {
    std::optional<SecretServiceState> service;
    std::optional<SealedFileState> file;
    /// Why neither can be told, a sentence that names the package to install, or what does not answer.
    std::string trouble;
};

/// The user's secrets: the Secret Service where the session has one, else the sealed file. Which one serves is settled
/// by the first call that can tell and stays so. A service that is there but does not answer, or whose module cannot be
/// loaded, is `unavailable`: the file in its place would look as if all secrets were gone.
class LinuxKeychain : public KeychainItems {
public:
    explicit LinuxKeychain(LinuxKeychainOptions options);

    std::int32_t update(const std::string& service, const std::string& account, std::string_view bytes) override;
    std::int32_t add(const std::string& service, const std::string& account, std::string_view bytes) override;
    Copied copy(const std::string& service, const std::string& account) override;
    std::int32_t find(const std::string& service, const std::string& account) override;
    std::int32_t remove(const std::string& service, const std::string& account) override;
    std::int32_t removeAll(const std::string& service) override;

    /// Asks the user nothing, starts nothing and changes nothing.
    KeychainSurvey survey();

private:
    /// Null where it cannot be told; the reason is logged.
    KeychainItems* chosen();
    /// Null where the environment names no bus. Throws AdapterModuleMissing.
    SecretService* service();
    SealedFileKeychain& file();

    LinuxKeychainOptions options_;
    std::mutex lock_;
    std::unique_ptr<SecretService> service_;
    std::unique_ptr<SealedFileKeychain> file_;
    KeychainItems* chosen_ = nullptr;
};

/// The options that the environment tells: the bus, the state folder and the file of the passphrase.
LinuxKeychainOptions linuxKeychainOptions(Environment& environment, std::string moduleFolder, std::string stateFolder);

} // namespace vesk
