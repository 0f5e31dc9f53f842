#pragma once

#include <algorithm>
#include <sys/resource.h>

namespace vesk::test {

/// The most descriptors that this process may have, put back at the end.
class DescriptorLimit {
public:
    DescriptorLimit() { ::getrlimit(RLIMIT_NOFILE, &before_); }
    ~DescriptorLimit() { ::setrlimit(RLIMIT_NOFILE, &before_); }
    DescriptorLimit(const DescriptorLimit&) = delete;
    DescriptorLimit& operator=(const DescriptorLimit&) = delete;

    void set(rlim_t most) const {
        const rlimit limit{most, before_.rlim_max};
        ::setrlimit(RLIMIT_NOFILE, &limit);
    }
    /// Lets so many be had as far as the system allows; a login often gives 1024.
    void raise(rlim_t most) const { set(std::max(before_.rlim_cur, std::min(most, before_.rlim_max))); }

private:
    rlimit before_{};
};

} // namespace vesk::test
