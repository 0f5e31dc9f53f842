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

/// For file systems without nameless files: a hidden name, which readers pass over, becomes the real one.
void createThroughHiddenName(int folder, const std::string& name, std::string_view bytes, const std::string& path) {
    const std::string hidden = "." + name + ".tmp";
    const FileDescriptor file(
        ::openat(folder, hidden.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, 0666));
    if (file.get() < 0) throw PosixError(errno, path);
    try {
        writeAndFlush(file, bytes, path);
        if (::renameat2(folder, hidden.c_str(), folder, name.c_str(), RENAME_NOREPLACE) != 0)
            throw PosixError(errno, path);
    } catch (...) {
        ::unlinkat(folder, hidden.c_str(), 0);
        throw;
    }
}

} // namespace

void createFileDurably(const std::string& folderPath, const std::string& name, std::string_view bytes) {
    const std::string path = folderPath + "/" + name;
    const FileDescriptor folder(::open(folderPath.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder.get() < 0) throw PosixError(errno, folderPath);
    const FileDescriptor file(::openat(folder.get(), ".", O_WRONLY | O_TMPFILE | O_CLOEXEC, 0666));
    if (file.get() >= 0) {
        writeAndFlush(file, bytes, path);
        const std::string link = "/proc/self/fd/" + std::to_string(file.get());
        if (::linkat(AT_FDCWD, link.c_str(), folder.get(), name.c_str(), AT_SYMLINK_FOLLOW) != 0)
            throw PosixError(errno, path);
    } else if (errno == EOPNOTSUPP || errno == EISDIR || errno == EINVAL) {
        createThroughHiddenName(folder.get(), name, bytes, path);
    } else {
        throw PosixError(errno, path);
    }
    if (::fsync(folder.get()) != 0) throw PosixError(errno, folderPath);
}

} // namespace vesk::vdir
