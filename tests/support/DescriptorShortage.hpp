#pragma once

#include "tests/support/DescriptorLimit.hpp"

#include <unistd.h>

namespace vesk::test {

/// While it lives, this process may open so many more files and folders than it has open now, and no more.
class DescriptorShortage {
public:
    explicit DescriptorShortage(int room) {
        const int lowestFree = ::dup(STDIN_FILENO);
        ::close(lowestFree);
        limit_.set(static_cast<rlim_t>(lowestFree + room));
    }

private:
    DescriptorLimit limit_;
};

} // namespace vesk::test
