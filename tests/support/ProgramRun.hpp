#pragma once

#include <chrono>
#include <filesystem>
#include <map>
#include <ostream>
#include <string>
#include <vector>

namespace vesk::test {

/// How a program ended. Streamed into a failing expectation, it tells what was run, where, and all that came out.
struct ProgramResult {
    std::vector<std::string> command;
    std::filesystem::path folder;
    /// The exit status; 128 and the signal's number where a signal ended it; -1 past the deadline.
    int status = -1;
    std::string output;
    std::string errorOutput;
};

std::ostream& operator<<(std::ostream& stream, const ProgramResult& result);

/// Runs a program in a fresh folder, its home too, with nothing of the caller's environment: a search path, a UTF-8
/// locale, UTC, and what a test adds. It has no terminal, no desktop and no bus. The folder goes with this object.
class ProgramRun {
public:
    explicit ProgramRun(std::filesystem::path program);
    ~ProgramRun();
    ProgramRun(const ProgramRun&) = delete;
    ProgramRun& operator=(const ProgramRun&) = delete;

    const std::filesystem::path& folder() const { return folder_; }
    /// Added to, changed or taken from by tests.
    std::map<std::string, std::string> environment;
    std::string input;
    /// Words before the program, such as a path of `setpriv` and its options.
    std::vector<std::string> launcher;
    /// Past it, the program and what it started in its session are killed.
    std::chrono::milliseconds deadline{30'000};

    /// Throws std::system_error where the program cannot be started.
    ProgramResult run(const std::vector<std::string>& arguments) const;

private:
    std::filesystem::path program_;
    std::filesystem::path folder_;
};

} // namespace vesk::test
