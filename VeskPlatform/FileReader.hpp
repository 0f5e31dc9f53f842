#pragma once

#include <cstdint>
#include <string>

namespace vesk {

/// Reads regular files whole. Relative paths are relative to the working directory.
class FileReader {
public:
    virtual ~FileReader() = default;
    /// The bytes of a regular file. Throws PosixError: also EISDIR for a folder, EINVAL for a pipe, a socket or a
    /// device (never waiting on one), and EFBIG for a file of more than `maximumBytes`. It may be the system's own
    /// failure instead, as in FileManager.
    virtual std::string contents(const std::string& path, std::uint64_t maximumBytes) = 0;
};

} // namespace vesk
