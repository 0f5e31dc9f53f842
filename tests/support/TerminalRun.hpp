#pragma once

#include <chrono>
#include <map>
#include <string>
#include <sys/types.h>
#include <vector>

namespace vesk::test {

/// A program with a controlling terminal of its own, at which a test types. The environment is what the test gives.
/// Waiting past ten seconds throws std::runtime_error with what the terminal has shown.
class TerminalRun {
public:
    TerminalRun(std::vector<std::string> arguments, std::map<std::string, std::string> environment);
    /// Kills the program where it still runs.
    ~TerminalRun();
    TerminalRun(const TerminalRun&) = delete;
    TerminalRun& operator=(const TerminalRun&) = delete;

    void waitFor(const std::string& text);
    void type(const std::string& keys);
    void hangUp();
    /// Waits for the end: the exit status, or 128 and the number of the signal.
    int finish();
    /// All that the terminal has shown, with what was typed.
    const std::string& shown() const { return shown_; }

private:
    /// Reads what there is; false at the end.
    bool readMore(std::chrono::steady_clock::time_point deadline);

    int terminal_ = -1;
    pid_t child_ = -1;
    std::string shown_;
};

} // namespace vesk::test
