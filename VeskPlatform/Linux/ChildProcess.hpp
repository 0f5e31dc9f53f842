#pragma once

#include <optional>
#include <string>
#include <vector>

namespace vesk {

/// The path of a system program in one of `folders`; none where it is not installed. The search path of the
/// environment and the working directory are never asked, since they are not the system's to trust.
std::optional<std::string> installedProgram(const std::string& name,
                                            const std::vector<std::string>& folders = {"/usr/bin", "/bin"});

struct ProgramResult {
    /// The exit status, or 128 and the number of the signal that ended it.
    int status = 0;
    std::string output;
    std::string errors;
};

/// Runs a program with an empty input, waits for its end and returns what it wrote (each at most 1 MB; what comes
/// after is dropped). None where it cannot be started. Descriptors of this process are closed in it, and signals are at
/// their defaults whatever this process ignores or blocks.
std::optional<ProgramResult> runProgram(const std::vector<std::string>& arguments);

/// The status, as above, of a program whose streams are /dev/null, in a session of its own: what it starts may outlive
/// it. None where it cannot be started.
std::optional<int> runQuietly(const std::vector<std::string>& arguments);

/// Starts a program that lives on by itself: its own session, all three streams /dev/null, nobody's child to reap,
/// descriptors and signals as above. False where it cannot be started.
bool startDetached(const std::vector<std::string>& arguments);

/// Puts every signal at its default and blocks none, in a child between fork and exec: only calls that are safe there.
void resetSignals();

} // namespace vesk
