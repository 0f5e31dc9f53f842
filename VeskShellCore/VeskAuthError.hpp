#pragma once

#include "VeskSupport/ErrorRecord.hpp"

#include <cstdint>
#include <string>

namespace vesk {

/// A failure of signing in. Domain "VeskAuthError"; the code is the kind's place.
class VeskAuthError : public ErrorRecord {
public:
    enum class Kind { invalidBaseURL = 1, server = 2, invalidResponse = 3 };

    /// `text` is the URL that was refused.
    static VeskAuthError invalidBaseURL(const std::string& text);
    /// `message` is what the service said, else the standard words for the status.
    static VeskAuthError server(std::int64_t statusCode, const std::string& message);
    static VeskAuthError invalidResponse();

    Kind kind() const { return kind_; }
    /// The HTTP status of what the service refused, 0 of other failures.
    std::int64_t statusCode() const { return statusCode_; }

private:
    VeskAuthError(Kind kind, std::string description, std::int64_t statusCode = 0);

    Kind kind_;
    std::int64_t statusCode_;
};

} // namespace vesk
