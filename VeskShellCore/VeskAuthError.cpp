#include "VeskShellCore/VeskAuthError.hpp"

#include <utility>

namespace vesk {

VeskAuthError::VeskAuthError(Kind kind, std::string description, std::int64_t statusCode)
    : ErrorRecord("VeskAuthError", static_cast<std::int64_t>(kind), std::move(description)), kind_(kind),
      statusCode_(statusCode) {}

VeskAuthError VeskAuthError::invalidBaseURL(const std::string& text) {
    return {Kind::invalidBaseURL, "Invalid Vesk auth base URL: " + text};
}

VeskAuthError VeskAuthError::server(std::int64_t statusCode, const std::string& message) {
    return {Kind::server, message, statusCode};
}

VeskAuthError VeskAuthError::invalidResponse() {
    return {Kind::invalidResponse, "The Vesk auth service returned an invalid response."};
}

} // namespace vesk
