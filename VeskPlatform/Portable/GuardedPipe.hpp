#pragma once

#include <chrono>
#include <functional>
#include <poll.h>
#include <span>
#include <string>
#include <string_view>

// This process's ends of a program's pipes, which must not be waited for without end: what the program started may hold
// the other ends for ever. Failures are PosixErrors with the program's name.

namespace vesk {

/// Waits until one of them is ready, however often a signal interrupts it; false where none is in time.
bool waitForAny(std::span<pollfd> ends, std::chrono::milliseconds limit);

/// Whether a pipe takes nothing more, by its writing end.
bool isFull(int writing);

/// Writes all of it, or what is taken until nobody reads any more. Asks `hasRoom` where the pipe is full, which waits
/// for room; false ends the writing. Of this end alone, the descriptor waits for nothing from now on.
void writeWhileRead(int input, std::string_view bytes, const std::function<bool()>& hasRoom, const std::string& name);

/// What comes until the end or until that time, whichever is first, and at most 64 MiB. What is there is read in any
/// case.
std::string readUntil(int stream, std::chrono::steady_clock::time_point time, const std::string& name);

} // namespace vesk
