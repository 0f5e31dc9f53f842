#include "VeskPlatform/Linux/SystemRandomSource.hpp"

#include "VeskSupport/ErrorRecord.hpp"

#include <cerrno>
#include <cstddef>
#include <sys/random.h>
#include <sys/types.h>

namespace vesk {

void SystemRandomSource::fill(std::span<std::uint8_t> bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::getrandom(bytes.data(), bytes.size(), 0);
        if (count >= 0)
            bytes = bytes.subspan(static_cast<std::size_t>(count));
        else if (errno != EINTR)
            throw PosixError(errno, "random numbers");
    }
}

} // namespace vesk
