#pragma once

#include "VeskSupport/ErrorRecord.hpp"

#include <string>

namespace vesk {

/// The numbers of the domain "NSURLErrorDomain" (Foundation/NSURLError.h).
enum class UrlErrorCode {
    unknown = -1,
    badURL = -1000,
    timedOut = -1001,
    unsupportedURL = -1002,
    cannotFindHost = -1003,
    cannotConnectToHost = -1004,
    networkConnectionLost = -1005,
    httpTooManyRedirects = -1007,
    badServerResponse = -1011,
    requiresSecureConnection = -1022,
    fileDoesNotExist = -1100,
    dataLengthExceedsMaximum = -1103,
    secureConnectionFailed = -1200,
    serverCertificateUntrusted = -1202,
};

/// The failure with a text of ours that names the host, or no host where that is empty.
ErrorRecord urlError(UrlErrorCode code, const std::string& host);

/// What a CURLcode means.
UrlErrorCode urlErrorCodeOf(int curlCode);

} // namespace vesk
