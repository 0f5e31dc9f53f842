#include "vesk/SecretsCommand.hpp"

#include "VeskPlatform/FileManager.hpp"
#include "VeskPlatform/FileReader.hpp"
#include "VeskPlatform/PrivateFiles.hpp"
#include "VeskShellCore/KeychainStore.hpp"
#include "VeskShellCore/ReleaseStateKeychain.hpp"
#include "VeskShellCore/WorkingDirectory.hpp"
#include "VeskSupport/FilePath.hpp"
#include "VeskSupport/Json.hpp"
#include "VeskSupport/Text.hpp"
#include "vesk/StandardInput.hpp"

#include <cerrno>

namespace vesk {
namespace {

constexpr std::uint64_t mostSecretBytes = std::uint64_t{1} << 20, mostArchiveBytes = std::uint64_t{16} << 20;

JsonValue read(const SecretsCommand& command, Platform& platform) {
    JsonValue::Object answer{{"account", {std::string(trimmed(command.account))}}};
    if (auto secret = KeychainStore(platform.keychainItems(), command.service).read(command.account))
        answer.emplace("secret", JsonValue{std::move(*secret)});
    return {std::move(answer)};
}

JsonValue set(const SecretsCommand& command, Platform& platform) {
    const std::string secret = readTextFromStandardInput(mostSecretBytes);
    KeychainStore(platform.keychainItems(), command.service).upsert(command.account, secret);
    return {JsonValue::Object{}};
}

JsonValue remove(const SecretsCommand& command, Platform& platform) {
    KeychainStore(platform.keychainItems(), command.service).remove(command.account);
    return {JsonValue::Object{}};
}

JsonValue presence(const SecretsCommand& command, Platform& platform) {
    JsonValue::Object answer;
    for (const auto& [account, isThere] : ReleaseStateKeychain::presence(platform.keychainItems(), command.service))
        answer.emplace(account, JsonValue{isThere});
    return {std::move(answer)};
}

/// A link would lead elsewhere, and a device or a pipe would be gone.
void requirePlaceOfFile(const std::string& path, FileManager& files) {
    const std::string folder = files.resolvedPath(parentFolder(path));
    const std::string name = path.substr(path.rfind('/'));
    if (files.resolvedPath(path) != (folder == "/" ? name : folder + name)) throw PosixError(ELOOP, path);
    const auto there = files.attributes(path);
    if (there && !there->isDirectory && !there->size) throw PosixError(EINVAL, path);
}

JsonValue exportAll(const SecretsCommand& command, Platform& platform) {
    const std::string path = absolutePath(platform.fileManager(), command.file);
    requirePlaceOfFile(path, platform.fileManager());
    const auto archive = ReleaseStateKeychain::exportNamedSecrets(platform.keychainItems(), command.service);
    platform.privateFiles().writeAtomically(path, ReleaseStateKeychain::encode(platform.propertyListCoder(), archive));
    JsonValue::Array accounts;
    for (const char* account : ReleaseStateKeychain::accounts)
        if (archive.values.contains(account)) accounts.push_back({std::string(account)});
    return {JsonValue::Object{{"file", {path}}, {"accounts", {std::move(accounts)}}}};
}

JsonValue rehearse(const SecretsCommand& command, Platform& platform) {
    const std::string bytes =
        platform.fileReader().contents(absolutePath(platform.fileManager(), command.file), mostArchiveBytes);
    const auto archive = ReleaseStateKeychain::decode(platform.propertyListCoder(), bytes);
    const bool matches = ReleaseStateKeychain::rehearse(platform.keychainItems(), platform.randomSource(), archive);
    return {JsonValue::Object{{"matches", {matches}}}};
}

JsonValue answer(const SecretsCommand& command, Platform& platform) {
    switch (command.verb) {
    case SecretsVerb::set: return set(command, platform);
    case SecretsVerb::read: return read(command, platform);
    case SecretsVerb::remove: return remove(command, platform);
    case SecretsVerb::presence: return presence(command, platform);
    case SecretsVerb::exportAll: return exportAll(command, platform);
    case SecretsVerb::rehearse: return rehearse(command, platform);
    }
    return {};
}

} // namespace

std::string runSecrets(const SecretsCommand& command, Platform& platform) {
    return writeJson(answer(command, platform)) + "\n";
}

} // namespace vesk
