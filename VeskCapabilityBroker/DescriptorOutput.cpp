#include "VeskCapabilityBroker/DescriptorOutput.hpp"

#include "VeskSupport/ErrorRecord.hpp"

#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace vesk {

void DescriptorOutput::write(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor_, bytes.data(), bytes.size());
        if (written >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno == EAGAIN) { // a descriptor that was handed over non-blocking
            pollfd waiting{.fd = descriptor_, .events = POLLOUT, .revents = 0};
            ::poll(&waiting, 1, -1);
        } else if (errno != EINTR) {
            throw PosixError(errno, name_);
        }
    }
}

void reserveStandardDescriptors() {
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor)
        if (::fcntl(descriptor, F_GETFD) == -1 && errno == EBADF) (void)::open("/dev/null", O_RDONLY);
}

} // namespace vesk
