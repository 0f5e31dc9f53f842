#pragma once

#include "VeskPlatform/Portable/FileDescriptor.hpp"

#include <optional>

namespace vesk {

/// Both ends close where this process, or a child of it, becomes another program.
struct Pipe {
    FileDescriptor reading, writing;
};

/// A new pipe whose ends are numbered beyond the standard streams, even where some of those are closed: a child's
/// streams are put in place over their numbers, and what this process writes to its own must not end up in the pipe.
/// None where the system refuses; `errno` says why.
std::optional<Pipe> makePipe();

} // namespace vesk
