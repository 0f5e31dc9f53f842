#include "VeskPlatform/Linux/Http/UrlErrors.hpp"

#include <curl/curl.h>
#include <string_view>

namespace vesk {
namespace {

std::string_view reason(UrlErrorCode code) {
    switch (code) {
    case UrlErrorCode::badURL: return "The URL is not valid.";
    case UrlErrorCode::timedOut: return "The request timed out.";
    case UrlErrorCode::unsupportedURL: return "The URL's scheme is not supported.";
    case UrlErrorCode::cannotFindHost: return "No server with this name could be found.";
    case UrlErrorCode::cannotConnectToHost: return "No connection to the server could be made.";
    case UrlErrorCode::networkConnectionLost: return "The connection to the server was lost.";
    case UrlErrorCode::httpTooManyRedirects: return "The server redirected the request too many times.";
    case UrlErrorCode::badServerResponse: return "The server's answer is no HTTP.";
    case UrlErrorCode::requiresSecureConnection: return "The server redirected the request to an insecure connection.";
    case UrlErrorCode::fileDoesNotExist: return "The file does not exist.";
    case UrlErrorCode::dataLengthExceedsMaximum: return "The server's answer is too large.";
    case UrlErrorCode::secureConnectionFailed: return "A secure connection to the server could not be made.";
    case UrlErrorCode::serverCertificateUntrusted: return "The server's certificate is not trusted.";
    case UrlErrorCode::unknown: break;
    }
    return "The request failed.";
}

} // namespace

ErrorRecord urlError(UrlErrorCode code, const std::string& host) {
    std::string text(reason(code));
    if (!host.empty()) text += " (" + host + ")";
    return {"NSURLErrorDomain", static_cast<std::int64_t>(code), std::move(text)};
}

UrlErrorCode urlErrorCodeOf(int curlCode) {
    switch (curlCode) {
    case CURLE_URL_MALFORMAT: return UrlErrorCode::badURL;
    case CURLE_OPERATION_TIMEDOUT: return UrlErrorCode::timedOut;
    case CURLE_COULDNT_RESOLVE_PROXY:
    case CURLE_COULDNT_RESOLVE_HOST: return UrlErrorCode::cannotFindHost;
    case CURLE_COULDNT_CONNECT: return UrlErrorCode::cannotConnectToHost;
    case CURLE_GOT_NOTHING:
    case CURLE_PARTIAL_FILE:
    case CURLE_SEND_ERROR:
    case CURLE_RECV_ERROR:
    case CURLE_HTTP2:
    case CURLE_HTTP2_STREAM: return UrlErrorCode::networkConnectionLost;
    case CURLE_UNSUPPORTED_PROTOCOL: // the scheme is a known one, so it is an answer without a header (HTTP/0.9)
    case CURLE_WEIRD_SERVER_REPLY:
    case CURLE_BAD_CONTENT_ENCODING: return UrlErrorCode::badServerResponse;
    case CURLE_FILE_COULDNT_READ_FILE: return UrlErrorCode::fileDoesNotExist;
    case CURLE_WRITE_ERROR: return UrlErrorCode::dataLengthExceedsMaximum; // our own refusal of more bytes
    case CURLE_PEER_FAILED_VERIFICATION:
    case CURLE_SSL_ISSUER_ERROR: return UrlErrorCode::serverCertificateUntrusted;
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_SSL_CERTPROBLEM:
    case CURLE_SSL_CIPHER:
    case CURLE_SSL_CACERT_BADFILE:
    case CURLE_SSL_ENGINE_INITFAILED:
    case CURLE_SSL_SHUTDOWN_FAILED:
    case CURLE_USE_SSL_FAILED: return UrlErrorCode::secureConnectionFailed;
    default: return UrlErrorCode::unknown;
    }
}

} // namespace vesk
