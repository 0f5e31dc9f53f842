#pragma once

#include "VeskPlatform/HttpTransport.hpp"
#include "VeskPlatform/Linux/Http/CertificatePlaces.hpp"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>

namespace vesk {

/// A URL taken apart; it holds libcurl's own form of it.
class HttpUrl {
public:
    /// Throws ErrorRecord, which names `host` alone, for what is no URL.
    HttpUrl(const std::string& text, const std::string& host);

    /// In lower case, as libcurl gives it.
    const std::string& scheme() const { return scheme_; }
    const std::string& host() const { return host_; }
    bool isHttp() const { return scheme_ == "http" || scheme_ == "https"; }
    void* handle() const { return handle_.get(); }

private:
    std::shared_ptr<void> handle_;
    std::string scheme_, host_;
};

/// One request and its answer, without following where that leads.
class CurlExchange {
public:
    struct Answer {
        HttpResponse response;
        /// The absolute URL that the answer sends us to, where it does.
        std::optional<std::string> redirection;
    };

    CurlExchange(const HttpUrl& url, const CertificatePlaces& certificates, std::size_t mostBodyBytes);
    /// Throws ErrorRecord, as HttpTransport does.
    Answer run(const HttpRequest& request);

private:
    void setHeaders(const HttpRequest& request);
    void setMethod(const HttpRequest& request);
    template <class Value> void set(int option, Value value);
    static std::size_t keep(char* bytes, std::size_t size, std::size_t count, void* exchange);

    const HttpUrl& url_;
    std::size_t mostBodyBytes_;
    std::shared_ptr<void> handle_, headers_;
    std::string body_;
};

/// Whether a header tells of the body, and goes with it.
bool isHeaderOfBody(const std::string& name);

} // namespace vesk
