#pragma once

#include "tests/support/TemporaryFolder.hpp"

#include <string>
#include <sys/types.h>

namespace vesk::test {

/// A D-Bus daemon of our own, for as long as the object lives. Throws std::runtime_error where it cannot be started.
class PrivateBus {
public:
    PrivateBus();
    ~PrivateBus();
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    const std::string& address() const { return address_; }
    /// Has the bus start `program` when somebody asks for `service`.
    void addActivatable(const std::string& service, const std::string& program);

private:
    TemporaryFolder folder_;
    std::string address_;
    pid_t daemon_ = -1;
};

} // namespace vesk::test
