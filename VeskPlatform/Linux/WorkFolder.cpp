#include "VeskPlatform/Linux/WorkFolder.hpp"

#include "VeskSupport/ErrorRecord.hpp"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vesk {

namespace fs = std::filesystem;

namespace {

FileDescriptor openFolder(const std::string& path) {
    return FileDescriptor(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

bool isOwn(const FileDescriptor& folder) {
    struct stat status {};
    return ::fstat(folder.get(), &status) == 0 && status.st_uid == ::geteuid();
}

bool isFree(const FileDescriptor& folder) { return ::flock(folder.get(), LOCK_EX | LOCK_NB) == 0; }

void removeFolder(const std::string& path) {
    std::error_code ignored; // what cannot be removed stays for the next run
    fs::remove_all(path, ignored);
}

void removeAbandoned(const std::string& parent, const std::string& prefix) {
    std::error_code failure;
    for (fs::directory_iterator entry(parent, failure), end; !failure && entry != end; entry.increment(failure)) {
        if (!entry->path().filename().string().starts_with(prefix)) continue;
        const FileDescriptor folder = openFolder(entry->path().string());
        if (folder && isOwn(folder) && isFree(folder)) removeFolder(entry->path().string());
    }
}

} // namespace

std::string temporaryFolder() {
    const char* named = ::secure_getenv("TMPDIR");
    struct stat status {};
    if (named != nullptr && named[0] == '/' && ::stat(named, &status) == 0 && S_ISDIR(status.st_mode)) return named;
    return "/tmp";
}

/// It gets its name when it is locked already, so that no other run takes it for an abandoned one.
WorkFolder::WorkFolder(const std::string& parent, const std::string& prefix, const std::string& name)
    : path_(parent + "/" + prefix + name) {
    removeAbandoned(parent, prefix);
    const std::string unnamed = parent + "/." + prefix + name;
    if (::mkdir(unnamed.c_str(), 0700) != 0) throw PosixError(errno, unnamed);
    lock_ = openFolder(unnamed);
    if (lock_ && isFree(lock_)
        && ::renameat2(AT_FDCWD, unnamed.c_str(), AT_FDCWD, path_.c_str(), RENAME_NOREPLACE) == 0)
        return;
    const int failure = errno;
    removeFolder(unnamed);
    throw PosixError(failure, path_);
}

WorkFolder::~WorkFolder() { removeFolder(path_); }

} // namespace vesk
