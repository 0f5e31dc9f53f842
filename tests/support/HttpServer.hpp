#pragma once

#include "VeskSupport/Json.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <string>
#include <sys/types.h>
#include <vector>

namespace vesk::test {

/// `http_server.py` on ports of its own, with certificates made for this run; it ends with this object, or with this
/// process.
class HttpServer {
public:
    /// Throws std::runtime_error where it does not start.
    HttpServer();
    ~HttpServer();
    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;

    std::string http() const { return origin("http", "http"); }
    /// With a certificate of the test's authority.
    std::string https() const { return origin("https", "https"); }
    /// The same for a server of another name.
    std::string wrongHost() const { return origin("https", "wrongHost"); }
    /// With a certificate that nobody has signed.
    std::string untrusted() const { return origin("https", "untrusted"); }
    std::string authorityFile() const { return folder_ / "ca.pem"; }

    /// What has arrived so far, each an object of `method`, `path`, `headers` (by lower-case name) and `body`.
    std::vector<JsonValue> requests() const;

private:
    std::string origin(const std::string& scheme, const std::string& name) const;

    TemporaryFolder folder_;
    pid_t process_ = -1;
    int input_ = -1;
    JsonValue ports_;
};

} // namespace vesk::test
