#include "VeskShellCore/VeskShellError.hpp"

#include "VeskShellCore/ProcessFailureText.hpp"
#include "VeskSupport/Text.hpp"

#include <utility>

namespace vesk {

VeskShellError::VeskShellError(Kind kind, std::string description)
    : ErrorRecord("VeskShellError", static_cast<std::int64_t>(kind), std::move(description)), kind_(kind) {}

VeskShellError VeskShellError::runtimeManifestNotFound(const std::vector<std::string>& paths) {
    return {Kind::runtimeManifestNotFound,
            "Unable to find a packaged Vesk runtime manifest. Checked: " + joined(paths, ", ")};
}

VeskShellError VeskShellError::capabilityBrokerNotFound(const std::vector<std::string>& paths) {
    return {Kind::capabilityBrokerNotFound,
            "Unable to find the Vesk capability broker. Checked: " + joined(paths, ", ")};
}

VeskShellError VeskShellError::invalidManifest(const std::string& text) {
    return {Kind::invalidManifest, "Invalid packaged runtime manifest: " + text};
}

VeskShellError VeskShellError::invalidResponse(const std::string& text) {
    return {Kind::invalidResponse, "Invalid packaged runtime response: " + text};
}

VeskShellError VeskShellError::processFailed(std::string command, std::int32_t status, std::string standardError) {
    std::string summary = summarizeProcessFailure(standardError);
    if (summary.empty()) summary = "A packaged runtime command failed.";
    VeskShellError error(Kind::processFailed, std::move(summary));
    error.command_ = std::move(command);
    error.status_ = status;
    error.standardError_ = std::move(standardError);
    return error;
}

VeskShellError VeskShellError::keychainError(const std::string& text, std::int32_t status) {
    VeskShellError error(Kind::keychainError, text + " (OSStatus " + std::to_string(status) + ")");
    error.status_ = status;
    return error;
}

} // namespace vesk
