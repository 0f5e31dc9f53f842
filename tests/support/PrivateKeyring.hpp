#pragma once

#include "tests/support/PrivateBus.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <string>
#include <sys/types.h>
#include <vector>

namespace vesk::test {

/// A gnome-keyring of our own on a bus of our own, with an unlocked collection for new secrets. While it lives, the
/// bus is this process's session bus, and HOME and the XDG folders lie in its folder. Throws std::runtime_error.
class PrivateKeyring {
public:
    PrivateKeyring();
    ~PrivateKeyring();
    PrivateKeyring(const PrivateKeyring&) = delete;
    PrivateKeyring& operator=(const PrivateKeyring&) = delete;

    const std::string& address() const { return bus_.address(); }
    PrivateBus& bus() { return bus_; }
    const std::string& folder() const { return folder_.path(); }
    pid_t process() const { return daemon_; }
    /// Locks the collection for new secrets, so that only its password opens it.
    void lock();
    /// Ends the daemon as abruptly as a crash does, and waits until the bus has seen it.
    void kill();
    /// Starts a daemon anew, over what the former one kept.
    void start();

private:
    TemporaryFolder folder_;
    PrivateBus bus_;
    pid_t daemon_ = -1;
};

/// A bus of our own, and as this process's session bus, for as long as the object lives.
class SessionBus {
public:
    SessionBus();
    ~SessionBus();
    SessionBus(const SessionBus&) = delete;
    SessionBus& operator=(const SessionBus&) = delete;

    PrivateBus& bus() { return bus_; }

private:
    PrivateBus bus_;
};

} // namespace vesk::test
