#pragma once

#include <string>
#include <vector>

namespace vesk {

/// What a program left when it had ended. The outputs are bytes as they came.
struct FinishedTask {
    int status = 0;
    std::string output;
    std::string errors;
};

// Programs are named by their absolute paths. Where one cannot be started, each of these throws the system's
// ErrorRecord. The waits block the calling thread, whichever it is.

/// Starts a program and waits for nothing.
void startTask(const std::string& program, const std::vector<std::string>& arguments);
/// Runs a program to its end with the outputs of this one; its exit status.
int exitStatusOfTask(const std::string& program, const std::vector<std::string>& arguments);
/// Runs a program to its end and keeps its outputs, however much it writes.
FinishedTask finishedTask(const std::string& program, const std::vector<std::string>& arguments);

} // namespace vesk
