#pragma once

#include "VeskSupport/ErrorRecord.hpp"

#include <cstdint>
#include <string>
#include <vector>

namespace vesk {

/// A failure of hosting the packaged runtime. Domain "VeskShellError"; the code is the kind's place.
class VeskShellError : public ErrorRecord {
public:
    enum class Kind {
        runtimeManifestNotFound = 1,
        capabilityBrokerNotFound = 2,
        invalidManifest = 3,
        invalidResponse = 4,
        processFailed = 5,
        keychainError = 6
    };

    /// The paths that were looked at, in order.
    static VeskShellError runtimeManifestNotFound(const std::vector<std::string>& paths);
    static VeskShellError capabilityBrokerNotFound(const std::vector<std::string>& paths);
    static VeskShellError invalidManifest(const std::string& text);
    static VeskShellError invalidResponse(const std::string& text);
    /// `command` is the whole command line and `standardError` what the process said. A person sees only what that
    /// comes to; the rest is for callers.
    static VeskShellError processFailed(std::string command, std::int32_t status, std::string standardError);
    static VeskShellError keychainError(const std::string& text, std::int32_t status);

    Kind kind() const { return kind_; }
    /// Of a failed process and of the keychain; empty and 0 of others.
    const std::string& command() const { return command_; }
    std::int32_t status() const { return status_; }
    const std::string& standardError() const { return standardError_; }

private:
    VeskShellError(Kind kind, std::string description);

    Kind kind_;
    std::string command_, standardError_;
    std::int32_t status_ = 0;
};

} // namespace vesk
