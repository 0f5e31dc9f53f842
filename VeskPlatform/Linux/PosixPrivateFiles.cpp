#include "VeskPlatform/Linux/PosixPrivateFiles.hpp"

#include "VeskPlatform/Portable/FileDescriptor.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace vesk {

namespace {

/// Throws where the path is longer than the system takes: its first parts could be made, the whole never.
bool isFolder(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) == 0) return S_ISDIR(status.st_mode);
    if (errno == ENAMETOOLONG) throw PosixError(errno, path);
    return false;
}

std::string folderOf(const std::string& path) {
    const std::string parent = std::filesystem::path(path).parent_path().string();
    return parent.empty() ? "." : parent;
}

void flush(const FileDescriptor& file, const std::string& path) {
    if (::fsync(file.get()) != 0) throw PosixError(errno, path);
}

void flushFolder(const std::string& path) {
    const FileDescriptor folder(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder) throw PosixError(errno, path);
    // Some file systems have no flush for folders; their renames are as durable as they get.
    if (::fsync(folder.get()) != 0 && errno != EINVAL) throw PosixError(errno, path);
}

/// An existing regular file.
FileDescriptor openForWriting(const std::string& path, int flags) {
    FileDescriptor file(::open(path.c_str(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC | flags));
    if (!file) throw PosixError(errno == ENXIO ? EINVAL : errno, path);
    struct stat status {};
    if (::fstat(file.get(), &status) != 0) throw PosixError(errno, path);
    if (!S_ISREG(status.st_mode)) throw PosixError(EINVAL, path);
    return file;
}

} // namespace

void makeFolders(const std::string& path, unsigned mode) {
    if (isFolder(path)) return;
    const std::string parent = folderOf(path);
    if (parent != path && parent != ".") makeFolders(parent, mode);
    if (::mkdir(path.c_str(), mode) == 0) return;
    const int failure = errno; // another process may have made it in between
    if (failure != EEXIST || !isFolder(path)) throw PosixError(failure, path);
}

void PosixPrivateFiles::createDirectories(const std::string& path, unsigned mode) { makeFolders(path, mode); }

void PosixPrivateFiles::setPermissions(const std::string& path, unsigned mode) {
    if (::chmod(path.c_str(), mode) != 0) throw PosixError(errno, path);
}

bool PosixPrivateFiles::exists(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) == 0) return true;
    if (errno == ENOENT || errno == ENOTDIR) return false;
    throw PosixError(errno, path);
}

void PosixPrivateFiles::createFile(const std::string& path, unsigned mode) {
    FileDescriptor file(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
    if (!file) throw PosixError(errno, path);
    try {
        if (::fchmod(file.get(), mode) != 0) throw PosixError(errno, path); // the mask may have taken some of it
        file.close(path);
    } catch (...) {
        (void)::unlink(path.c_str());
        throw;
    }
}

void PosixPrivateFiles::writeThrough(const std::string& path, std::string_view bytes) {
    FileDescriptor file = openForWriting(path, 0);
    if (::ftruncate(file.get(), 0) != 0) throw PosixError(errno, path);
    writeAll(file, bytes, path);
    flush(file, path);
    file.close(path);
}

void PosixPrivateFiles::rename(const std::string& path, const std::string& newPath) {
    if (::rename(path.c_str(), newPath.c_str()) != 0) throw PosixError(errno, newPath);
    // The file has its new name by now, so nothing may fail any more; it is as durable as the system makes it.
    const FileDescriptor folder(::open(folderOf(newPath).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder) (void)::fsync(folder.get());
}

void PosixPrivateFiles::removeFile(const std::string& path) {
    if (::unlink(path.c_str()) != 0) throw PosixError(errno, path);
}

void PosixPrivateFiles::append(const std::string& path, std::string_view bytes) {
    FileDescriptor file = openForWriting(path, O_APPEND);
    writeAll(file, bytes, path);
    file.close(path);
}

void PosixPrivateFiles::writeAtomically(const std::string& path, std::string_view bytes) {
    std::string temporary = path + ".XXXXXX";
    FileDescriptor file(::mkostemp(temporary.data(), O_CLOEXEC));
    if (!file) throw PosixError(errno, path);
    try {
        writeAll(file, bytes, path);
        flush(file, path);
        file.close(path);
        if (::rename(temporary.c_str(), path.c_str()) != 0) throw PosixError(errno, path);
    } catch (...) {
        (void)::unlink(temporary.c_str());
        throw;
    }
    flushFolder(folderOf(path));
}

} // namespace vesk
