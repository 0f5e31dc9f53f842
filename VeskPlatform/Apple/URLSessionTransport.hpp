#pragma once

#include "VeskPlatform/HttpTransport.hpp"

namespace vesk {

/// The shared URL session. Its failures have the system's own numbers and words.
class URLSessionTransport : public HttpTransport {
public:
    HttpResponse send(const HttpRequest& request) override;
    std::string standardText(int status) override;
};

} // namespace vesk
