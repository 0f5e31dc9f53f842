#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <string>

namespace vesk {

/// A request whose body is sent whole.
struct HttpRequest {
    std::string url;
    std::string method = "GET";
    std::map<std::string, std::string> headers{};
    /// Not sent with GET and HEAD.
    std::string body{};
    /// From the start to the last byte of the answer, redirections included; none at all is a time-out.
    std::chrono::milliseconds timeout{60'000};
};

struct HttpResponse {
    /// None where what answered was no HTTP server, such as a file.
    std::optional<int> status;
    std::string body;
};

/// Sends requests, with the certificates that the system trusts. Safe from any thread.
class HttpTransport {
public:
    virtual ~HttpTransport() = default;
    /// Blocks until the whole answer is there; redirections are followed as browsers do, and none leads away from
    /// HTTPS. Throws ErrorRecord of the domain "NSURLErrorDomain" (Foundation/NSURLError.h): -1000 no URL, -1001 no
    /// answer in time, -1002 a scheme that is not spoken, -1003 no such host, -1004 no connection, -1005 it broke off,
    /// -1007 too many redirections, -1011 an answer that is no HTTP, -1022 a redirection away from HTTPS, -1100 no such
    /// file, -1103 too large an answer, -1200 no secure connection, -1202 a certificate that is not trusted; -1 for all
    /// else. No text holds anything of the request but its host.
    virtual HttpResponse send(const HttpRequest& request) = 0;
    /// The standard words for a status (RFC 9110, section 15): "Internal Server Error" for 500. One without has those
    /// of its class, and none is empty.
    virtual std::string standardText(int status) = 0;
};

} // namespace vesk
