#include "VeskPlatform/Linux/Vdir/FolderTurn.hpp"

#include "VeskSupport/ErrorRecord.hpp"

#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace vesk::vdir {
namespace {

/// Not of none, and not where another folder has come in its place.
bool isAt(const FileDescriptor& folder, const std::string& path) {
    struct stat held {};
    struct stat named {};
    return folder && ::fstat(folder.get(), &held) == 0 && ::stat(path.c_str(), &named) == 0
           && held.st_dev == named.st_dev && held.st_ino == named.st_ino;
}

bool isLocked(const FileDescriptor& folder) {
    constexpr int attempts = 1000;
    for (int i = 0; i < attempts; ++i) {
        if (::flock(folder.get(), LOCK_EX | LOCK_NB) == 0) return true;
        if (errno != EWOULDBLOCK && errno != EINTR) return false;
        ::poll(nullptr, 0, 2); // milliseconds
    }
    return false;
}

} // namespace

void FolderTurn::take(const std::string& path) {
    if (!isAt(folder_, path)) {
        isTaken_ = false;
        folder_.reset(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (!folder_) throw PosixError(errno, path);
    }
    if (!isTaken_) isTaken_ = isLocked(folder_);
}

} // namespace vesk::vdir
