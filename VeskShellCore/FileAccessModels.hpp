#pragma once

#include "VeskSupport/Records.hpp"

#include <optional>
#include <string>

namespace vesk {

/// How an attempt to reach a local path ended. `status` is "invalid", "broad_access_required", "ready", "denied" or
/// "error".
struct CapabilityFileAccessResponse {
    std::string brokerPath;
    std::optional<std::string> bundlePath;
    std::string status;
    std::string requestedPath;
    /// The folder that was tried in place of the path; absent where none was.
    std::optional<std::string> probedPath;
    std::string detail;

    bool operator==(const CapabilityFileAccessResponse&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityFileAccessResponse> =
    recordFields(required("brokerPath", &CapabilityFileAccessResponse::brokerPath),
                 optional("bundlePath", &CapabilityFileAccessResponse::bundlePath),
                 required("status", &CapabilityFileAccessResponse::status),
                 required("requestedPath", &CapabilityFileAccessResponse::requestedPath),
                 optional("probedPath", &CapabilityFileAccessResponse::probedPath),
                 required("detail", &CapabilityFileAccessResponse::detail));

} // namespace vesk
