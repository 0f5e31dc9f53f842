#pragma once

#include "VeskPlatform/ByteOutput.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <optional>
#include <string>
#include <vector>

namespace vesk::test {

/// Keeps what is written, write by write. With `failure`, every write throws it as a PosixError.
class FakeByteOutput : public ByteOutput {
public:
    std::vector<std::string> writes;
    std::optional<int> failure;

    void write(std::string_view bytes) override {
        if (failure) throw PosixError(*failure, "standard output");
        writes.emplace_back(bytes);
    }
    std::string text() const {
        std::string result;
        for (const std::string& bytes : writes) result += bytes;
        return result;
    }
};

} // namespace vesk::test
