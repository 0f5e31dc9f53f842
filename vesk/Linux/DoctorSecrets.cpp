#include "vesk/Linux/DoctorSecrets.hpp"

#include "VeskPlatform/Linux/AdapterModule.hpp"
#include "VeskPlatform/Linux/DesktopReach.hpp"
#include "VeskPlatform/Linux/MainBundle.hpp"
#include "VeskPlatform/Linux/UserFolders.hpp"

namespace vesk {
namespace {

constexpr const char* serviceName = "The Secret Service";

DoctorService ofService(const SecretServiceState& state, bool canPrompt) {
    if (!state.trouble.empty())
        return {serviceName, {{"The Secret Service does not answer: " + state.trouble, "Start your keyring anew."}}};
    if (state.program.empty()) return {std::string(serviceName) + " (started when it is asked)", {}};
    const std::string name = std::string(serviceName) + " of " + state.program;
    if (!state.isLocked)
        return {name, {{"There is no keyring for new secrets yet.", "Log in to the desktop, or make one."}}};
    if (!*state.isLocked) return {name + " (unlocked)", {}};
    DoctorService locked{name + " (locked)", {}};
    if (!canPrompt)
        locked.findings.push_back(
            {"The secrets are locked and nobody can be asked to unlock them.", "Unlock your keyring on the desktop."});
    return locked;
}

std::string keyName(const SealedFileState& state) {
    if (!state.kind) return " (no secrets yet)";
    return *state.kind == SealingKeyKind::passphrase ? " (sealed with a passphrase)" : " (sealed with a key file)";
}

std::string remedyOf(const SealedFileState& state) {
    switch (state.status) {
    case KeychainStatus::denied: return "Give the file to yourself and chmod 600 it.";
    case KeychainStatus::locked: return "Set VESK_SECRETS_PASSPHRASE_FILE to a file of mode 0600 with the passphrase.";
    case KeychainStatus::unavailable: return "End the program that holds it.";
    case KeychainStatus::decode: return "Bring back the key, or remove the file and set the secrets anew.";
    default: return "Mend the state folder.";
    }
}

DoctorService ofFile(const SealedFileState& state) {
    DoctorService result{"The file " + state.path + keyName(state), {}};
    if (state.status != KeychainStatus::success) result.findings.push_back({state.trouble, remedyOf(state)});
    return result;
}

} // namespace

DoctorService secretsService(const KeychainSurvey& survey, bool canPrompt) {
    if (survey.service) return ofService(*survey.service, canPrompt);
    if (survey.file) return ofFile(*survey.file);
    return {serviceName, {{survey.trouble, "apt install libsecret-1-0, or log in anew"}}};
}

DoctorService examineSecrets(Environment& environment) {
    auto options = linuxKeychainOptions(environment, moduleFolderOf(runningExecutable()), stateFolder(environment));
    return secretsService(LinuxKeychain(std::move(options)).survey(), desktopCanBeReached(environment));
}

} // namespace vesk
