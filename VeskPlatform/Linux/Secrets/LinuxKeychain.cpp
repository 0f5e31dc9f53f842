#include "VeskPlatform/Linux/Secrets/LinuxKeychain.hpp"

#include "VeskPlatform/Environment.hpp"
#include "VeskPlatform/Linux/AdapterModule.hpp"

#include <sys/stat.h>
#include <utility>

namespace vesk {
namespace {

constexpr const char* silentBus = "The session bus does not answer.";

/// As the D-Bus libraries look for it. One that would have to be started for us is none.
bool namesSessionBus(Environment& environment) {
    if (!environment.value("DBUS_SESSION_BUS_ADDRESS").value_or("").empty()) return true;
    const std::string folder = environment.value("XDG_RUNTIME_DIR").value_or("");
    struct stat status {};
    return !folder.empty() && ::stat((folder + "/bus").c_str(), &status) == 0 && S_ISSOCK(status.st_mode);
}

} // namespace

LinuxKeychain::LinuxKeychain(LinuxKeychainOptions options) : options_(std::move(options)) {}

std::int32_t LinuxKeychain::update(const std::string& service, const std::string& account, std::string_view bytes) {
    KeychainItems* items = chosen();
    return items == nullptr ? KeychainStatus::unavailable : items->update(service, account, bytes);
}

std::int32_t LinuxKeychain::add(const std::string& service, const std::string& account, std::string_view bytes) {
    KeychainItems* items = chosen();
    return items == nullptr ? KeychainStatus::unavailable : items->add(service, account, bytes);
}

KeychainItems::Copied LinuxKeychain::copy(const std::string& service, const std::string& account) {
    KeychainItems* items = chosen();
    return items == nullptr ? Copied{KeychainStatus::unavailable, std::nullopt} : items->copy(service, account);
}

std::int32_t LinuxKeychain::find(const std::string& service, const std::string& account) {
    KeychainItems* items = chosen();
    return items == nullptr ? KeychainStatus::unavailable : items->find(service, account);
}

std::int32_t LinuxKeychain::remove(const std::string& service, const std::string& account) {
    KeychainItems* items = chosen();
    return items == nullptr ? KeychainStatus::unavailable : items->remove(service, account);
}

std::int32_t LinuxKeychain::removeAll(const std::string& service) {
    KeychainItems* items = chosen();
    return items == nullptr ? KeychainStatus::unavailable : items->removeAll(service);
}

KeychainSurvey LinuxKeychain::survey() {
    const std::lock_guard guard(lock_);
    KeychainSurvey survey;
    try {
        SecretService* used = service();
        switch (used == nullptr ? SecretServicePresence::absent : used->presence()) {
        case SecretServicePresence::present: survey.service = used->state(); break;
        case SecretServicePresence::absent: survey.file = file().state(); break;
        case SecretServicePresence::unknown: survey.trouble = silentBus; break;
        }
    } catch (const AdapterModuleMissing& error) {
        survey.trouble = error.description();
    }
    return survey;
}

KeychainItems* LinuxKeychain::chosen() {
    const std::lock_guard guard(lock_);
    if (chosen_ != nullptr) return chosen_;
    std::string trouble = "The session bus or its Secret Service does not answer.";
    try {
        SecretService* used = service();
        const auto found = used == nullptr ? SecretServicePresence::absent : used->reach();
        if (found == SecretServicePresence::present) chosen_ = used;
        if (found == SecretServicePresence::absent) chosen_ = &file();
    } catch (const AdapterModuleMissing& error) {
        trouble = error.description();
    }
    if (chosen_ == nullptr && options_.service.log) options_.service.log("secrets: " + trouble);
    return chosen_;
}

SecretService* LinuxKeychain::service() {
    if (!options_.namesSessionBus) return nullptr;
    if (!service_) {
        const AdapterModule module(options_.moduleFolder, "secrets", "libsecret-1-0");
        service_.reset(module.function<SecretServiceFactory>("veskSecretService")(options_.service));
    }
    return service_.get();
}

SealedFileKeychain& LinuxKeychain::file() {
    if (!file_) file_ = std::make_unique<SealedFileKeychain>(options_.file);
    return *file_;
}

LinuxKeychainOptions linuxKeychainOptions(Environment& environment, std::string moduleFolder, std::string stateFolder) {
    LinuxKeychainOptions options;
    options.moduleFolder = std::move(moduleFolder);
    options.namesSessionBus = namesSessionBus(environment);
    options.file.folder = std::move(stateFolder);
    options.file.passphraseFile = environment.value("VESK_SECRETS_PASSPHRASE_FILE").value_or("");
    return options;
}

} // namespace vesk
