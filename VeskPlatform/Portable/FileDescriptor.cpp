#include "VeskPlatform/Portable/FileDescriptor.hpp"

#include "VeskSupport/ErrorRecord.hpp"

#include <cerrno>
#include <unistd.h>

namespace vesk {

void FileDescriptor::reset(int descriptor) {
    // An interrupted close has closed all the same; closing again could hit another thread's new file.
    if (descriptor_ >= 0) (void)::close(descriptor_);
    descriptor_ = descriptor;
}

void FileDescriptor::close(const std::string& path) {
    if (::close(release()) != 0 && errno != EINTR) throw PosixError(errno, path);
}

void writeAll(const FileDescriptor& file, std::string_view bytes, const std::string& path) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(file.get(), bytes.data(), bytes.size());
        if (written >= 0)
            bytes.remove_prefix(static_cast<std::size_t>(written));
        else if (errno != EINTR)
            throw PosixError(errno, path);
    }
}

} // namespace vesk
