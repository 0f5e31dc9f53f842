#include "VeskPlatform/Linux/Vdir/FileReplacement.hpp"

#include "VeskPlatform/Linux/RandomUuid.hpp"
#include "VeskPlatform/Linux/Vdir/Folder.hpp"
#include "VeskPlatform/Portable/FileDescriptor.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace vesk::vdir {
namespace {

void writeAndFlush(const FileDescriptor& file, std::string_view bytes, const std::string& path) {
    writeAll(file, bytes, path);
    if (::fsync(file.get()) != 0) throw PosixError(errno, path);
}

/// Renames without replacing anything, also on network file systems that know no such flag.
bool giveName(int folder, const std::string& hidden, const std::string& name) {
    if (::renameat2(folder, hidden.c_str(), folder, name.c_str(), RENAME_NOREPLACE) == 0) return true;
    if (errno != EINVAL && errno != ENOSYS && errno != EOPNOTSUPP) return false;
    if (::linkat(folder, hidden.c_str(), folder, name.c_str(), 0) != 0) return false;
    ::unlinkat(folder, hidden.c_str(), 0);
    return true;
}

/// For file systems without nameless files: a hidden name, which readers pass over, becomes the real one.
void createThroughHiddenName(int folder, const std::string& name, std::string_view bytes, const std::string& path) {
    const std::string hidden = "." + name + ".tmp";
    const FileDescriptor file(
        ::openat(folder, hidden.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, 0666));
    if (file.get() < 0) throw PosixError(errno, path);
    try {
        writeAndFlush(file, bytes, path);
        if (!giveName(folder, hidden, name)) throw PosixError(errno, path);
    } catch (...) {
        ::unlinkat(folder, hidden.c_str(), 0);
        throw;
    }
}

/// False where the file system has no nameless files, or cannot name one.
bool createNameless(int folder, const std::string& name, std::string_view bytes, const std::string& path) {
    const FileDescriptor file(::openat(folder, ".", O_WRONLY | O_TMPFILE | O_CLOEXEC, 0666));
    if (file.get() < 0 && (errno == EOPNOTSUPP || errno == EISDIR || errno == EINVAL)) return false;
    if (file.get() < 0) throw PosixError(errno, path);
    writeAndFlush(file, bytes, path);
    const std::string link = "/proc/self/fd/" + std::to_string(file.get());
    if (::linkat(AT_FDCWD, link.c_str(), folder, name.c_str(), AT_SYMLINK_FOLLOW) == 0) return true;
    // ENOENT and EXDEV: no /proc here. The others: no hard links here.
    if (errno == ENOENT || errno == EPERM || errno == EOPNOTSUPP || errno == EXDEV) return false;
    throw PosixError(errno, path);
}

/// Some network file systems cannot flush a folder and say so; there, the server sees to it.
bool flushFolder(const FileDescriptor& folder) {
    return ::fsync(folder.get()) == 0 || errno == EINVAL || errno == EOPNOTSUPP;
}

FileDescriptor openFolder(const std::string& path) {
    FileDescriptor folder(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder.get() < 0) throw PosixError(errno, path);
    return folder;
}

void flushOrThrow(const FileDescriptor& folder, const std::string& path) {
    if (!flushFolder(folder)) throw PosixError(errno, path);
}

/// A file behind its links: what is replaced is the file, not a link to it.
struct RealFile {
    std::string folder, name;
    std::string path() const { return folder + "/" + name; }
};

std::optional<RealFile> realFile(const std::string& path) {
    std::error_code failed;
    const auto real = std::filesystem::canonical(path, failed);
    if (!failed) return RealFile{real.parent_path().string(), real.filename().string()};
    if (failed == std::errc::no_such_file_or_directory) return std::nullopt;
    throw PosixError(failed.value(), path);
}

/// Whether the file holds these bytes; not where it is gone.
bool holds(const std::string& path, std::string_view bytes) {
    try {
        return readRegularFile(path, bytes.size()) == bytes;
    } catch (const PosixError& error) {
        if (error.code() == ENOENT || error.code() == EFBIG) return false;
        throw;
    }
}

bool knowsNoFlags(int errnoValue) { return errnoValue == EINVAL || errnoValue == ENOSYS || errnoValue == EOPNOTSUPP; }

/// A hidden file beside the real one, which goes with this object.
class HiddenFile {
public:
    HiddenFile(int folder, const RealFile& real)
        : folder_(folder), name_("." + randomUuid() + ".tmp"), path_(real.folder + "/" + name_) {}
    ~HiddenFile() { ::unlinkat(folder_, name_.c_str(), 0); }
    HiddenFile(const HiddenFile&) = delete;
    HiddenFile& operator=(const HiddenFile&) = delete;

    const char* name() const { return name_.c_str(); }
    const std::string& path() const { return path_; }

    /// Writes and flushes it, with the permissions and, where the system lets it, the group of the real one.
    void write(std::string_view bytes, const RealFile& real) const {
        FileDescriptor file(::openat(folder_, name(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600));
        struct stat status {};
        if (file.get() < 0 || ::fstatat(folder_, real.name.c_str(), &status, 0) != 0)
            throw PosixError(errno, real.path());
        const bool keepsGroup = ::fchown(file.get(), static_cast<uid_t>(-1), status.st_gid) == 0;
        const mode_t mode = status.st_mode & (keepsGroup ? 07777 : 0707);
        if (::fchmod(file.get(), mode) != 0) throw PosixError(errno, real.path());
        writeAndFlush(file, bytes, real.path());
        file.close(real.path());
    }

private:
    int folder_;
    std::string name_, path_;
};

/// Exchanges the two files until the hidden one is what is meant to go: `expected`, or what the caller wrote itself.
bool exchange(int folder, const HiddenFile& hidden, const RealFile& real, std::string_view expected,
              std::string_view bytes) {
    const auto swap = [&] {
        return ::renameat2(folder, hidden.name(), folder, real.name.c_str(), RENAME_EXCHANGE) == 0;
    };
    if (!swap()) {
        if (errno == ENOENT) return false;
        if (!knowsNoFlags(errno)) throw PosixError(errno, real.path());
        if (!holds(real.path(), expected)) return false;
        if (::renameat(folder, hidden.name(), folder, real.name.c_str()) != 0) throw PosixError(errno, real.path());
        return true;
    }
    if (holds(hidden.path(), expected)) return true;
    // Another program was faster: its file goes back; and so does one that comes in the meantime.
    constexpr int attempts = 8;
    for (int i = 0; i < attempts; ++i) {
        if (!swap()) throw PosixError(errno, real.path());
        if (holds(hidden.path(), bytes)) break;
    }
    return false;
}

} // namespace

bool replaceFileDurably(const std::string& path, std::string_view expected, std::string_view bytes, FolderTurn& turn) {
    const auto real = realFile(path);
    if (!real) return false;
    const FileDescriptor folder = openFolder(real->folder);
    const HiddenFile hidden(folder.get(), *real);
    hidden.write(bytes, *real); // before the turn, which is to be short
    turn.take(real->folder);
    if (!exchange(folder.get(), hidden, *real, expected, bytes)) return false;
    flushOrThrow(folder, real->folder);
    return true;
}

bool removeFileDurably(const std::string& path, std::string_view expected, FolderTurn& turn) {
    const std::size_t slash = path.rfind('/');
    const RealFile named{path.substr(0, slash), path.substr(slash + 1)}; // of a link, the link goes
    const FileDescriptor folder = openFolder(named.folder);
    const HiddenFile hidden(folder.get(), named);
    turn.take(named.folder);
    if (!holds(path, expected)) return false;
    if (::renameat(folder.get(), named.name.c_str(), folder.get(), hidden.name()) != 0) {
        if (errno == ENOENT) return false;
        throw PosixError(errno, path);
    }
    if (!holds(hidden.path(), expected)) {
        if (!giveName(folder.get(), hidden.name(), named.name) && errno != EEXIST) throw PosixError(errno, path);
        return false;
    }
    flushOrThrow(folder, named.folder);
    return true;
}

bool createFolderDurably(const std::string& parent, const std::string& name, const std::string& fileName,
                         std::string_view bytes) {
    const std::string path = parent + "/" + name, hidden = parent + "/." + randomUuid() + ".tmp";
    const FileDescriptor folder = openFolder(parent);
    std::error_code ignored;
    if (std::filesystem::exists(std::filesystem::symlink_status(path, ignored))) return false;
    if (::mkdir(hidden.c_str(), 0700) != 0) throw PosixError(errno, path);
    try {
        createFileDurably(hidden, fileName, bytes);
        int failure = ::renameat2(AT_FDCWD, hidden.c_str(), AT_FDCWD, path.c_str(), RENAME_NOREPLACE) == 0 ? 0 : errno;
        if (knowsNoFlags(failure)) failure = ::rename(hidden.c_str(), path.c_str()) == 0 ? 0 : errno;
        if (failure == 0) {
            flushOrThrow(folder, parent);
            return true;
        }
        if (failure != EEXIST && failure != ENOTEMPTY && failure != ENOTDIR) throw PosixError(failure, path);
    } catch (...) {
        std::filesystem::remove_all(hidden, ignored);
        throw;
    }
    std::filesystem::remove_all(hidden, ignored);
    return false;
}

void createFileDurably(const std::string& folderPath, const std::string& name, std::string_view bytes) {
    const std::string path = folderPath + "/" + name;
    const FileDescriptor folder(::open(folderPath.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder.get() < 0) throw PosixError(errno, folderPath);
    if (!createNameless(folder.get(), name, bytes, path)) createThroughHiddenName(folder.get(), name, bytes, path);
    if (flushFolder(folder)) return;
    const PosixError failure(errno, folderPath);
    ::unlinkat(folder.get(), name.c_str(), 0);
    throw failure;
}

} // namespace vesk::vdir
