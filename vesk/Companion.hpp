#pragma once

#include "VeskPlatform/Platform.hpp"
#include "vesk/CommandLine.hpp"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vesk {

/// What `vesk doctor` prints, and why it could not look at everything.
struct DoctorAnswer {
    std::string text;
    std::optional<std::string> blindness;
};

/// What differs between the systems that the companion runs on: the ports, and who keeps consent. Failures are
/// ErrorRecords, a command that means nothing is a UsageError.
class CompanionHost {
public:
    virtual ~CompanionHost() = default;
    /// The ports for one command. What a failure comes from, such as a key file that others may read, stands in the
    /// diagnostic log.
    virtual std::unique_ptr<Platform> makePlatform() = 0;
    /// Runs `vesk consent` and returns what it prints.
    virtual std::string consent(const ConsentCommand& command) = 0;
    virtual void consentPage(const ConsentPageCommand& command) = 0;
    virtual DoctorAnswer doctor(const DoctorCommand& command) = 0;
};

/// Runs one command (its arguments without the program's name), with its output and its failure's line; the exit
/// status: 0, 1 for a failure, 2 for a command that means nothing, 3 for an update that is not settled.
int runCompanion(std::vector<std::string> arguments, CompanionHost& host);

} // namespace vesk
