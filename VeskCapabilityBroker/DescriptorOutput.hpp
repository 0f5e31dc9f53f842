#pragma once

#include "VeskPlatform/ByteOutput.hpp"

#include <string>

namespace vesk {

/// Writes to an open file descriptor without a buffer; does not own it. `name` stands in errors.
class DescriptorOutput : public ByteOutput {
public:
    DescriptorOutput(int descriptor, std::string name) : descriptor_(descriptor), name_(std::move(name)) {}
    void write(std::string_view bytes) override;

private:
    int descriptor_;
    std::string name_;
};

/// Keeps descriptors 0 to 2 from being given to files that are opened later: one that is closed becomes a descriptor
/// that reads as empty and refuses writes, so that a closed standard output is a failure and no file's damage.
void reserveStandardDescriptors();

} // namespace vesk
