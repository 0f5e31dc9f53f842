#pragma once

#include <optional>
#include <string>
#include <string_view>

// What the failure of another program comes to in words for a person.

namespace vesk {

/// The program's own fatal error out of its standard error, else its first line that is no stack frame, else all of it.
/// A runtime that does not know a command is told to be rebuilt.
std::string summarizeProcessFailure(std::string_view standardError);

} // namespace vesk

namespace vesk::VeskProductSurfaceText {

/// `text` trimmed, or `fallback` where that is empty or has words that are not for users.
std::string sanitizeUserFacing(const std::optional<std::string>& text, const std::string& fallback);

/// Whether `text` has a word of the system's inner life, or one of five or more capitals, digits and underscores, as
/// error codes and variables are named.
bool containsInternalLeak(std::string_view text);

} // namespace vesk::VeskProductSurfaceText
