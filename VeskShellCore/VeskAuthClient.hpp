#pragma once

#include "VeskPlatform/Platform.hpp"
#include "VeskShellCore/AuthModels.hpp"
#include "VeskShellCore/VeskAuthError.hpp"
#include "VeskSupport/Task.hpp"

#include <optional>
#include <string>

namespace vesk {

class HttpTransport;

/// The two calls to the auth service. It retries nothing and keeps nothing between calls, which may overlap and outlive
/// it; a call ends within 60 seconds. Both throw VeskAuthError, and what HttpTransport throws.
class VeskAuthClient {
public:
    /// `baseURL` is taken as it stands; without it, VESK_AUTH_BASE_URL, else `defaultBaseURL` (the deployment's, an
    /// option of the build), which both have to be URLs with a scheme. Throws VeskAuthError `invalidBaseURL`. The
    /// platform's transport outlives the calls.
    VeskAuthClient(Platform& platform, const std::string& defaultBaseURL,
                   std::optional<std::string> baseURL = std::nullopt);

    const std::string& baseURL() const { return baseURL_; }

    /// Has a link sent to an address. The installation's identifier, the challenge and the state are those of the
    /// session that is kept until the link is followed.
    Task<VeskAuthStartResponse> requestSignInLink(std::string email, std::string installationID,
                                                  std::string codeChallenge, std::string clientState,
                                                  std::optional<std::string> appVersion, std::string platform) const;
    /// Trades the grant of a link for credentials.
    Task<VeskAuthRedeemResponse> redeem(std::string grant, std::string installationID, std::string codeVerifier,
                                        std::string clientState, std::optional<std::string> appVersion,
                                        std::optional<std::string> deviceName) const;

private:
    template <class Response> Task<Response> sendJSON(const std::string& path, const JsonValue& payload) const;

    HttpTransport& transport_;
    std::string baseURL_;
};

} // namespace vesk
