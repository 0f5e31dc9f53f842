#include "VeskPlatform/Linux/Vdir/FileReplacement.hpp"

#include "VeskPlatform/Linux/FileDescriptor.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
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

} // namespace

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
