#pragma once

#include <string_view>

namespace vesk {

/// A stream that bytes go out on, such as standard output. Used from one thread at a time.
class ByteOutput {
public:
    virtual ~ByteOutput() = default;
    /// Hands all of `bytes` to the system before it returns. Throws PosixError, also EPIPE where nobody reads.
    virtual void write(std::string_view bytes) = 0;
};

} // namespace vesk
