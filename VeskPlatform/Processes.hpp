#pragma once

#include <cstdint>

namespace vesk {

/// The processes of the machine. Safe from any thread.
class Processes {
public:
    virtual ~Processes() = default;
    /// What comes of sending a process signal 0, which does nothing (kill(2)): 0 where it could be sent, else the
    /// `errno`.
    virtual int errorOfNullSignal(std::int32_t processIdentifier) = 0;
};

} // namespace vesk
