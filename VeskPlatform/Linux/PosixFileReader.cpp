#include "VeskPlatform/Linux/PosixFileReader.hpp"

#include "VeskPlatform/Portable/FileDescriptor.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vesk {

namespace {

void requireRegularFile(const struct stat& status, const std::string& path) {
    if (S_ISDIR(status.st_mode)) throw PosixError(EISDIR, path);
    if (!S_ISREG(status.st_mode)) throw PosixError(EINVAL, path);
}

/// Looks before it opens, since opening a device can already set something off, and looks again at what it has opened.
FileDescriptor openRegularFile(const std::string& path, struct stat& status) {
    if (path.find('\0') != std::string::npos) throw PosixError(EINVAL, path.c_str());
    if (::stat(path.c_str(), &status) != 0) throw PosixError(errno, path);
    requireRegularFile(status, path);
    FileDescriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (!file) throw PosixError(errno == ENXIO ? EINVAL : errno, path);
    if (::fstat(file.get(), &status) != 0) throw PosixError(errno, path);
    requireRegularFile(status, path);
    return file;
}

} // namespace

std::string PosixFileReader::contents(const std::string& path, std::uint64_t maximumBytes) {
    struct stat status {};
    const FileDescriptor file = openRegularFile(path, status);
    const auto announced = static_cast<std::uint64_t>(status.st_size);
    if (announced > maximumBytes) throw PosixError(EFBIG, path);
    // The announced size is a hint: it is zero under /proc, and a file may grow while it is read.
    constexpr std::size_t step = 65536;
    std::string bytes;
    bytes.reserve(announced);
    std::string block(static_cast<std::size_t>(std::clamp<std::uint64_t>(announced + 1, 4096, step)), '\0');
    for (;;) {
        const ssize_t count = ::read(file.get(), block.data(), block.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) throw PosixError(errno, path);
        if (count == 0) return bytes;
        if (bytes.size() + static_cast<std::size_t>(count) > maximumBytes) throw PosixError(EFBIG, path);
        bytes.append(block, 0, static_cast<std::size_t>(count));
    }
}

} // namespace vesk
