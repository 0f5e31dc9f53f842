#pragma once

#include <optional>
#include <string>
#include <string_view>

// What the engine says, in words for people and for the diagnostic log.

namespace vesk {

/// The line for a request that was refused: its scheme and host, and nothing else of the address.
std::string refusalLine(std::string_view url);

/// The same for a file, which the engine refuses by itself and only tells of; none for other messages.
std::optional<std::string> refusedFileLine(std::string_view message);

/// Why the engine did not start: what its standard error, kept in the file at `logPath`, gives away, else `reason`.
std::string startFailure(const std::string& logPath, const std::string& reason);

} // namespace vesk
