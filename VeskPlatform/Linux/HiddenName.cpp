#include "VeskPlatform/Linux/HiddenName.hpp"

#include "VeskPlatform/Linux/RandomUuid.hpp"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vesk {

std::string hiddenName() { return ".vesk-" + randomUuid() + ".tmp"; }

bool moveBeside(int folder, const std::string& hidden, const std::string& name) {
    if (::renameat2(folder, hidden.c_str(), folder, name.c_str(), RENAME_NOREPLACE) == 0) return true;
    if (!isNotSupported(errno)) return false;
    if (::linkat(folder, hidden.c_str(), folder, name.c_str(), 0) == 0)
        return ::unlinkat(folder, hidden.c_str(), 0) == 0;
    if (!isNotSupported(errno)) return false;
    struct stat taken {};
    if (::fstatat(folder, name.c_str(), &taken, AT_SYMLINK_NOFOLLOW) != 0)
        return ::renameat(folder, hidden.c_str(), folder, name.c_str()) == 0;
    errno = EEXIST;
    return false;
}

bool isNotSupported(int errnoValue) {
    return errnoValue == EINVAL || errnoValue == ENOSYS || errnoValue == EOPNOTSUPP || errnoValue == EPERM;
}

} // namespace vesk
