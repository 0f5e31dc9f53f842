#pragma once

#include <string>
#include <string_view>
#include <utility>

namespace vesk {

/// Owns one open file descriptor, or none (-1).
class FileDescriptor {
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
    FileDescriptor(FileDescriptor&& other) noexcept : descriptor_(other.release()) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        reset(other.release());
        return *this;
    }
    ~FileDescriptor() { reset(); }

    int get() const { return descriptor_; }
    explicit operator bool() const { return descriptor_ >= 0; }
    int release() { return std::exchange(descriptor_, -1); }
    void reset(int descriptor = -1);
    /// Closes it and throws PosixError with `path` where the system reports a failed write only now.
    void close(const std::string& path);

private:
    int descriptor_ = -1;
};

/// Writes all of `bytes`, however many calls it takes. Throws PosixError with `path`.
void writeAll(const FileDescriptor& file, std::string_view bytes, const std::string& path);

} // namespace vesk
