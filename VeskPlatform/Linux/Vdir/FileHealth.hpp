#pragma once

#include <cstdint>

namespace vesk::vdir {

/// What reading a file came to.
enum class FileHealth : std::uint32_t {
    whole,
    damaged,   ///< Read, but not or not wholly understood.
    unreadable ///< Not read at all; the next run tries again.
};

} // namespace vesk::vdir
