#include "VeskShellCore/VeskAuthClient.hpp"

#include "VeskPlatform/Environment.hpp"
#include "VeskPlatform/HttpTransport.hpp"
#include "VeskShellCore/AuthBaseURL.hpp"
#include "VeskSupport/CompactJson.hpp"
#include "VeskSupport/DetachedWork.hpp"
#include "VeskSupport/Text.hpp"

#include <chrono>
#include <functional>
#include <utility>

namespace vesk {

/// What the service says when it refuses a call.
struct AuthErrorEnvelope {
    std::string error;
};

template <>
inline constexpr auto recordTable<AuthErrorEnvelope> = recordFields(required("error", &AuthErrorEnvelope::error));

namespace {

/// A variable of blanks is a mistake to be told and not passed over.
std::string configuredBaseURL(Environment& environment, const std::string& defaultBaseURL) {
    const auto named = environment.value("VESK_AUTH_BASE_URL");
    std::string candidate = named ? std::string(trimmed(*named)) : defaultBaseURL;
    if (!isURLWithScheme(candidate)) throw VeskAuthError::invalidBaseURL(candidate);
    return candidate;
}

/// The decoder's own words are dropped, since they may hold what it read.
template <class Record> std::optional<Record> decoded(const std::string& body) {
    try {
        return fromJson<Record>(parseJson(body));
    } catch (const DecodingError&) {
        return std::nullopt;
    }
}

bool isSuccess(int status) { return status >= 200 && status <= 299; }

template <class Response> Task<Response> exchange(HttpTransport& transport, HttpRequest request) {
    std::function<HttpResponse()> sending = [&transport, request] { return transport.send(request); };
    const HttpResponse response = co_await onThreadOfItsOwn(std::move(sending));
    if (!response.status) throw VeskAuthError::invalidResponse();
    if (!isSuccess(*response.status)) {
        const auto envelope = decoded<AuthErrorEnvelope>(response.body);
        throw VeskAuthError::server(*response.status,
                                    envelope ? envelope->error : transport.standardText(*response.status));
    }
    auto answer = decoded<Response>(response.body);
    if (!answer) throw VeskAuthError::invalidResponse();
    co_return *std::move(answer);
}

} // namespace

VeskAuthClient::VeskAuthClient(Platform& platform, const std::string& defaultBaseURL,
                               std::optional<std::string> baseURL)
    : transport_(platform.httpTransport()),
      baseURL_(baseURL ? *std::move(baseURL) : configuredBaseURL(platform.environment(), defaultBaseURL)) {}

Task<VeskAuthStartResponse> VeskAuthClient::requestSignInLink(std::string email, std::string installationID,
                                                              std::string codeChallenge, std::string clientState,
                                                              std::optional<std::string> appVersion,
                                                              std::string platform) const {
    const AuthStartRequest request{.email = std::move(email),
                                   .installationID = std::move(installationID),
                                   .codeChallenge = std::move(codeChallenge),
                                   .clientState = std::move(clientState),
                                   .appVersion = std::move(appVersion),
                                   .platform = std::move(platform)};
    return sendJSON<VeskAuthStartResponse>("/v1/auth/start", toJson(request));
}

Task<VeskAuthRedeemResponse> VeskAuthClient::redeem(std::string grant, std::string installationID,
                                                    std::string codeVerifier, std::string clientState,
                                                    std::optional<std::string> appVersion,
                                                    std::optional<std::string> deviceName) const {
    const AuthRedeemRequest request{.grant = std::move(grant),
                                    .installationID = std::move(installationID),
                                    .codeVerifier = std::move(codeVerifier),
                                    .clientState = std::move(clientState),
                                    .appVersion = std::move(appVersion),
                                    .deviceName = std::move(deviceName)};
    return sendJSON<VeskAuthRedeemResponse>("/v1/auth/redeem", toJson(request));
}

template <class Response>
Task<Response> VeskAuthClient::sendJSON(const std::string& path, const JsonValue& payload) const {
    return exchange<Response>(transport_, {.url = appendingPath(baseURL_, path),
                                           .method = "POST",
                                           .headers = {{"content-type", "application/json"}},
                                           .body = writeCompactJson(payload),
                                           .timeout = std::chrono::seconds(60)});
}

} // namespace vesk
