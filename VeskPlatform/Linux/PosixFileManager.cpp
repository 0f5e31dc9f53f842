#include "VeskPlatform/Linux/PosixFileManager.hpp"

#include "VeskPlatform/Linux/DirectoryStream.hpp"
#include "VeskPlatform/Linux/FileCopy.hpp"
#include "VeskPlatform/Linux/FileWriting.hpp"
#include "VeskPlatform/Linux/PosixPrivateFiles.hpp"
#include "VeskPlatform/Linux/SystemRandomSource.hpp"
#include "VeskPlatform/Linux/WorkFolder.hpp"
#include "VeskPlatform/Portable/FileDescriptor.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace vesk {

namespace fs = std::filesystem;

namespace {

bool hasNullByte(const std::string& path) { return path.find('\0') != std::string::npos; }

/// The system would read only what stands before it.
void requireNoNullByte(const std::string& path) {
    if (hasNullByte(path)) throw PosixError(EINVAL, path.c_str());
}

std::optional<struct stat> statusOf(const std::string& path) {
    struct stat status {};
    if (hasNullByte(path) || ::stat(path.c_str(), &status) != 0) return std::nullopt;
    return status;
}

/// Goes up from a path and compares folders by what they are, not by what they are called.
bool liesIn(const struct stat& folder, fs::path path) {
    for (;;) {
        struct stat status {};
        if (::lstat(path.c_str(), &status) == 0 && status.st_dev == folder.st_dev && status.st_ino == folder.st_ino)
            return true;
        if (path == path.parent_path()) return false;
        path = path.parent_path();
    }
}

/// Cut towards zero, and to what an Instant can hold: some file systems keep times of any year.
Instant instantOf(const timespec& time) {
    using std::chrono::milliseconds;
    constexpr std::int64_t mostSeconds = milliseconds::max().count() / 1000 - 1;
    const std::int64_t seconds = std::clamp<std::int64_t>(time.tv_sec, -mostSeconds, mostSeconds);
    const std::int64_t thousandths = time.tv_nsec / 1'000'000;
    const bool isPartOfOneBefore = seconds < 0 && time.tv_nsec % 1'000'000 != 0;
    return Instant(milliseconds(seconds * 1000 + thousandths + (isPartOfOneBefore ? 1 : 0)));
}

class PosixDirectoryReader : public DirectoryReader {
public:
    explicit PosixDirectoryReader(const std::string& path) : path_(path), stream_(vesk::openDirectory(path)) {
        if (!stream_) throw PosixError(errno, path);
    }

    std::optional<DirectoryEntry> next() override {
        for (;;) {
            errno = 0;
            const dirent* entry = ::readdir(stream_.get());
            if (entry == nullptr && errno != 0) throw PosixError(errno, path_);
            if (entry == nullptr) return std::nullopt;
            std::string name = entry->d_name;
            if (name == "." || name == "..") continue;
            const bool isDirectory = entry->d_type == DT_DIR || (entry->d_type == DT_UNKNOWN && isFolder(name));
            return DirectoryEntry{std::move(name), isDirectory};
        }
    }

private:
    /// For file systems that do not tell the type with the name.
    bool isFolder(const std::string& name) const {
        struct stat status {};
        return ::fstatat(::dirfd(stream_.get()), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0
               && S_ISDIR(status.st_mode);
    }

    std::string path_;
    DirectoryStream stream_;
};

} // namespace

std::string PosixFileManager::currentDirectoryPath() {
    std::error_code failure;
    const fs::path path = fs::current_path(failure);
    if (failure) throw PosixError(failure.value(), ".");
    return path.string();
}

void PosixFileManager::createDirectory(const std::string& path) {
    requireNoNullByte(path);
    makeFolders(path, 0777);
}

bool PosixFileManager::fileExists(const std::string& path) { return statusOf(path).has_value(); }

std::optional<FileAttributes> PosixFileManager::attributes(const std::string& path) {
    const auto status = statusOf(path);
    if (!status) return std::nullopt;
    FileAttributes attributes{.isDirectory = S_ISDIR(status->st_mode), .size = {}, .modified = {}};
    if (S_ISREG(status->st_mode)) attributes.size = status->st_size;
    attributes.modified = instantOf(status->st_mtim);
    return attributes;
}

bool PosixFileManager::isOrContains(const std::string& folder, const std::string& item) {
    struct stat wanted {};
    if (hasNullByte(folder) || hasNullByte(item) || ::lstat(folder.c_str(), &wanted) != 0) return false;
    if (!statusOf(item)) return false;
    std::error_code failure;
    const fs::path target = fs::canonical(item, failure);
    if (failure) throw PosixError(failure.value(), item); // too long without its links: nobody can tell
    const fs::path own = fs::absolute(item);
    const fs::path above = fs::canonical(own.parent_path(), failure);
    return liesIn(wanted, target) || (!failure && liesIn(wanted, above / own.filename()));
}

std::unique_ptr<DirectoryReader> PosixFileManager::openDirectory(const std::string& path) {
    requireNoNullByte(path);
    return std::make_unique<PosixDirectoryReader>(path);
}

std::string PosixFileManager::firstBytes(const std::string& path, std::size_t count) {
    requireNoNullByte(path);
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!file) throw PosixError(errno, path);
    std::string bytes(count, '\0');
    std::size_t filled = 0;
    while (filled < count) {
        const ssize_t taken = ::read(file.get(), bytes.data() + filled, count - filled);
        if (taken < 0 && errno == EINTR) continue;
        if (taken < 0) throw PosixError(errno, path);
        if (taken == 0) break;
        filled += static_cast<std::size_t>(taken);
    }
    bytes.resize(filled);
    return bytes;
}

void PosixFileManager::writeFile(const std::string& path, std::string_view bytes, ExistingFile existing) {
    writeWholeFile(path, bytes, existing);
}

void PosixFileManager::copyItem(const std::string& path, const std::string& destination) {
    requireNoNullByte(path);
    requireNoNullByte(destination);
    copyTree(path, destination);
}

void PosixFileManager::removeFile(const std::string& path) {
    requireNoNullByte(path);
    std::error_code failure;
    const bool wasThere = fs::remove(path, failure);
    if (failure) throw PosixError(failure.value(), path);
    if (!wasThere) throw PosixError(ENOENT, path);
}

void PosixFileManager::removeItem(const std::string& path) {
    requireNoNullByte(path);
    std::error_code failure;
    const std::uintmax_t removed = fs::remove_all(path, failure);
    if (failure) throw PosixError(failure.value(), path);
    if (removed == 0) throw PosixError(ENOENT, path);
}

std::unique_ptr<WorkDirectory> PosixFileManager::makeWorkDirectory(const std::string& prefix) {
    SystemRandomSource source;
    return std::make_unique<WorkFolder>(temporaryFolder(), prefix, randomUuid(source).text());
}

bool PosixFileManager::isExecutableFile(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) && ::access(path.c_str(), X_OK) == 0;
}

std::string PosixFileManager::resolvedPath(const std::string& path) {
    std::error_code failure;
    const fs::path resolved = fs::weakly_canonical(path, failure);
    return failure ? path : resolved.string();
}

} // namespace vesk
