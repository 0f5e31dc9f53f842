#include "VeskPlatform/Linux/Secrets/SealingKeySource.hpp"

#include "VeskPlatform/KeychainItems.hpp"
#include "VeskPlatform/Linux/RandomUuid.hpp"
#include "VeskPlatform/Linux/Secrets/KeychainFailure.hpp"
#include "VeskPlatform/Linux/Secrets/PrivateFileReading.hpp"
#include "VeskPlatform/Portable/FileDescriptor.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <string_view>
#include <unistd.h>

namespace vesk {
namespace {

void writeNewFile(const std::string& path, std::string_view bytes) {
    FileDescriptor file(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!file) throw PosixError(errno, path);
    writeAll(file, bytes, path);
    if (::fsync(file.get()) != 0) throw PosixError(errno, path);
    file.close(path);
}

void flushFolderOf(const std::string& path) {
    const std::string folder = std::filesystem::path(path).parent_path();
    const FileDescriptor opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!opened || (::fsync(opened.get()) != 0 && errno != EINVAL)) throw PosixError(errno, folder);
}

/// Under a name of its own first, so that a stopped process leaves no half of a key under the real one.
void writeOnce(const std::string& path, std::string_view bytes) {
    const std::string temporary = path + "." + randomUuid();
    try {
        writeNewFile(temporary, bytes);
        if (::link(temporary.c_str(), path.c_str()) != 0) throw PosixError(errno, path);
    } catch (...) {
        (void)::unlink(temporary.c_str());
        throw;
    }
    (void)::unlink(temporary.c_str());
    flushFolderOf(path);
}

std::string_view firstLine(std::string_view text) {
    const std::string_view line = text.substr(0, text.find('\n'));
    return line.ends_with('\r') ? line.substr(0, line.size() - 1) : line;
}

} // namespace

SealingKeyKind SealingKeySource::kindOfNewStore() const {
    return passphraseFile_.empty() ? SealingKeyKind::keyFile : SealingKeyKind::passphrase;
}

std::unique_ptr<SealingKey> SealingKeySource::keyOfPassphrase(const PassphraseCost& cost) const {
    if (passphraseFile_.empty())
        throw KeychainFailure(KeychainStatus::locked,
                              "The secrets need a passphrase; name its file with VESK_SECRETS_PASSPHRASE_FILE.");
    const auto text = readPrivateFile(passphraseFile_, FinalLink::followed);
    if (!text) throw KeychainFailure(KeychainStatus::locked, "The passphrase file " + passphraseFile_ + " is missing.");
    const std::string_view passphrase = firstLine(text->value());
    if (passphrase.empty())
        throw KeychainFailure(KeychainStatus::locked, "The passphrase file " + passphraseFile_ + " is empty.");
    return std::make_unique<SealingKey>(passphrase, cost);
}

std::unique_ptr<SealingKey> SealingKeySource::keyOfFile() const {
    const auto bytes = readPrivateFile(keyFile_, FinalLink::refused);
    if (!bytes) throw KeychainFailure(KeychainStatus::decode, "The key file " + keyFile_ + " is missing.");
    if (bytes->value().size() != SealingKey::size)
        throw KeychainFailure(KeychainStatus::decode, "The key file " + keyFile_ + " is damaged.");
    return std::make_unique<SealingKey>(bytes->value());
}

void SealingKeySource::makeKeyFile() const {
    if (readPrivateFile(keyFile_, FinalLink::refused)) return;
    WipedText bytes(SealingKey::size);
    fillWithRandomBytes(bytes.value());
    try {
        writeOnce(keyFile_, bytes.value());
    } catch (const PosixError& error) {
        const bool isRefused = error.code() == EACCES || error.code() == EPERM || error.code() == EROFS;
        throw KeychainFailure(isRefused ? KeychainStatus::denied : KeychainStatus::failed,
                              "The key file cannot be made: " + error.description() + ".");
    }
}

} // namespace vesk
