#include "VeskPlatform/Linux/Secrets/PrivateFileReading.hpp"

#include "VeskPlatform/KeychainItems.hpp"
#include "VeskPlatform/Linux/Secrets/KeychainFailure.hpp"
#include "VeskPlatform/Portable/FileDescriptor.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vesk {
namespace {

constexpr std::size_t mostBytes = 4096;

[[noreturn]] void refuse(const std::string& path, const std::string& why) {
    throw KeychainFailure(KeychainStatus::denied, path + " is refused: " + why + ".");
}

void requirePrivate(const struct stat& status, const std::string& path) {
    if (!S_ISREG(status.st_mode)) refuse(path, "it is no regular file");
    if (status.st_uid != ::geteuid() && status.st_uid != 0) refuse(path, "it is another user's");
    if ((status.st_mode & 077) != 0) refuse(path, "others may use it (chmod 600)");
    if (static_cast<std::size_t>(status.st_size) > mostBytes) refuse(path, "it is too large");
}

[[noreturn]] void failReading(const std::string& path) {
    const PosixError error(errno, path);
    throw KeychainFailure(error.code() == EACCES || error.code() == ELOOP ? KeychainStatus::denied
                                                                          : KeychainStatus::failed,
                          error.description() + ".");
}

} // namespace

std::unique_ptr<WipedText> readPrivateFile(const std::string& path, FinalLink link) {
    const int follow = link == FinalLink::refused ? O_NOFOLLOW : 0;
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC | follow));
    if (!file && (errno == ENOENT || errno == ENOTDIR)) return nullptr;
    if (!file) failReading(path);
    struct stat status {};
    if (::fstat(file.get(), &status) != 0) failReading(path);
    requirePrivate(status, path);
    auto text = std::make_unique<WipedText>(mostBytes); // at its full size at once: growing would leave copies behind
    std::size_t filled = 0;
    while (filled < mostBytes) {
        const ssize_t count = ::read(file.get(), text->value().data() + filled, mostBytes - filled);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) failReading(path);
        if (count == 0) break;
        filled += static_cast<std::size_t>(count);
    }
    text->value().resize(filled);
    return text;
}

} // namespace vesk
