#pragma once

#include "VeskPlatform/HttpTransport.hpp"
#include "VeskPlatform/Linux/Http/CertificatePlaces.hpp"

#include <cstddef>

namespace vesk {

/// Through libcurl: no cookies, no stored passwords, nothing kept between requests; a proxy where the environment names
/// one (http_proxy, https_proxy, no_proxy). Certificates and host names are always verified.
class CurlHttpTransport : public HttpTransport {
public:
    static constexpr std::size_t mostBodyBytes = std::size_t{64} << 20;
    static constexpr int mostRedirections = 20;

    explicit CurlHttpTransport(CertificatePlaces certificates);
    HttpResponse send(const HttpRequest& request) override;
    std::string standardText(int status) override;

private:
    CertificatePlaces certificates_;
};

} // namespace vesk
