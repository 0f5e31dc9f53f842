#include "VeskPlatform/Linux/PrivateDatabaseFile.hpp"

#include "VeskPlatform/Linux/PosixPrivateFiles.hpp"
#include "VeskPlatform/Portable/FileDescriptor.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace vesk {

void preparePrivateDatabaseFile(const std::string& folder, const std::string& path) {
    makeFolders(folder, 0700);
    const FileDescriptor file(::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (!file && errno != EEXIST) throw PosixError(errno, path);
    struct stat status {};
    if (::stat(path.c_str(), &status) == 0 && (status.st_mode & 07777) != 0600)
        (void)::chmod(path.c_str(), 0600); // another user's file: writing tells
}

} // namespace vesk
