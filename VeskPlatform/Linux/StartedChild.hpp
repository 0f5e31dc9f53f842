#pragma once

#include "VeskPlatform/Portable/FileDescriptor.hpp"

#include <chrono>
#include <cstdint>
#include <string>
#include <sys/types.h>

namespace vesk {

/// Owns one child of this process, which nobody else waits for. Ends it and takes its status where that was not done.
class StartedChild {
public:
    /// `name` is told in failures. Throws PosixError, with the child ended, where the system gives no handle on it.
    StartedChild(pid_t child, std::string name);
    StartedChild(StartedChild&& other) noexcept;
    StartedChild& operator=(StartedChild&&) = delete;
    ~StartedChild() { end(); }

    /// A descriptor that poll(2) finds readable once the child has ended.
    int handle() const { return handle_.get(); }
    /// Whether it has ended, after waiting so long for that.
    bool hasEndedWithin(std::chrono::milliseconds time) const;
    /// Waits, and takes the status: that of the exit, or 128 and the number of the signal that ended it. Once.
    std::int32_t takeStatus();
    /// Kills and reaps it; nothing where its status was taken.
    void end() noexcept;

private:
    pid_t child_ = -1;
    std::string name_;
    FileDescriptor handle_;
};

} // namespace vesk
