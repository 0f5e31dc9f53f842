#pragma once

#include "VeskSupport/Uuid.hpp"

#include <cstdint>
#include <span>

namespace vesk {

/// Random numbers that nobody can foresee. Safe from any thread.
class RandomSource {
public:
    virtual ~RandomSource() = default;
    /// Fills all of `bytes` from a source fit for secrets. Throws PosixError where the system has none.
    virtual void fill(std::span<std::uint8_t> bytes) = 0;
};

/// A new UUID of version 4.
inline Uuid randomUuid(RandomSource& source) {
    Uuid::Bytes bytes{};
    source.fill(bytes);
    return Uuid::fromRandomBytes(bytes);
}

} // namespace vesk
