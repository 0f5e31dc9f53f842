#pragma once

#include "VeskPlatform/Linux/ConsentPrompt.hpp"

namespace vesk {

/// Writes `question` and " [y/N] " to the controlling terminal and reads one line of it. "y" and "yes" grant, in any
/// case, another line denies; end of input, a hang-up and an interrupt (which does not end the process then) leave it
/// undecided. None where the process has no terminal or runs in its background, where reading would stop it.
std::optional<PromptAnswer> askOnTerminal(const std::string& question);

} // namespace vesk
