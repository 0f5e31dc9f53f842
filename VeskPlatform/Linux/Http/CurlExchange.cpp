#include "VeskPlatform/Linux/Http/CurlExchange.hpp"

#include "VeskPlatform/Linux/Http/UrlErrors.hpp"

#include <curl/curl.h>
#include <new>
#include <strings.h>

namespace vesk {
namespace {

std::string part(CURLU* url, CURLUPart which) {
    char* text = nullptr;
    if (curl_url_get(url, which, &text, 0) != CURLUE_OK) return {};
    const std::unique_ptr<char, decltype(&curl_free)> owned(text, curl_free);
    return text;
}

/// libcurl takes the path for the host where "https:///path" has none.
bool lacksHost(const std::string& text) {
    const auto colon = text.find(':');
    return ::strncasecmp(text.c_str(), "http", 4) == 0 && colon != std::string::npos
           && text.compare(colon + 1, 2, "//") == 0 && (colon + 3 >= text.size() || text[colon + 3] == '/');
}

bool isRedirection(long status) { return (status >= 301 && status <= 303) || status == 307 || status == 308; }

} // namespace

HttpUrl::HttpUrl(const std::string& text, const std::string& host)
    : handle_(curl_url(), [](void* url) { curl_url_cleanup(static_cast<CURLU*>(url)); }) {
    auto* url = static_cast<CURLU*>(handle_.get());
    if (url == nullptr) throw std::bad_alloc();
    if (text.find('\0') != std::string::npos || lacksHost(text)
        || curl_url_set(url, CURLUPART_URL, text.c_str(), CURLU_NON_SUPPORT_SCHEME) != CURLUE_OK)
        throw urlError(UrlErrorCode::badURL, host);
    scheme_ = part(url, CURLUPART_SCHEME);
    host_ = part(url, CURLUPART_HOST);
}

CurlExchange::CurlExchange(const HttpUrl& url, const CertificatePlaces& certificates, std::size_t mostBodyBytes)
    : url_(url), mostBodyBytes_(mostBodyBytes),
      handle_(curl_easy_init(), [](void* handle) { curl_easy_cleanup(handle); }) {
    if (handle_ == nullptr) throw std::bad_alloc();
    set(CURLOPT_CURLU, url.handle());
    set(CURLOPT_PROTOCOLS_STR, url.isHttp() ? "http,https" : "file");
    set(CURLOPT_FOLLOWLOCATION, 0L);
    set(CURLOPT_NOSIGNAL, 1L);   // a signal would end the wait for a name on one thread only
    set(CURLOPT_QUICK_EXIT, 1L); // else the end of a call would wait for a name server past every limit
    set(CURLOPT_SSL_VERIFYPEER, 1L);
    set(CURLOPT_SSL_VERIFYHOST, 2L);
    if (certificates.file) set(CURLOPT_CAINFO, certificates.file->c_str());
    if (certificates.folder) set(CURLOPT_CAPATH, certificates.folder->c_str());
    set(CURLOPT_WRITEFUNCTION, &CurlExchange::keep);
    set(CURLOPT_WRITEDATA, this);
}

CurlExchange::Answer CurlExchange::run(const HttpRequest& request) {
    set(CURLOPT_TIMEOUT_MS, static_cast<long>(request.timeout.count()));
    setHeaders(request);
    setMethod(request);
    const CURLcode code = curl_easy_perform(handle_.get());
    if (code != CURLE_OK) throw urlError(urlErrorCodeOf(code), url_.host());
    Answer answer;
    long status = 0;
    curl_easy_getinfo(handle_.get(), CURLINFO_RESPONSE_CODE, &status);
    if (url_.isHttp()) answer.response.status = static_cast<int>(status);
    char* redirection = nullptr;
    curl_easy_getinfo(handle_.get(), CURLINFO_REDIRECT_URL, &redirection);
    if (redirection != nullptr && isRedirection(status)) answer.redirection = redirection;
    answer.response.body = std::move(body_);
    return answer;
}

/// An empty one of libcurl's own takes it out: it would wait a second for leave to send a large body.
void CurlExchange::setHeaders(const HttpRequest& request) {
    curl_slist* list = curl_slist_append(nullptr, "Expect:");
    for (const auto& [name, value] : request.headers) {
        curl_slist* longer = curl_slist_append(list, (name + ": " + value).c_str());
        if (longer != nullptr) list = longer;
    }
    headers_ = std::shared_ptr<void>(list, [](void* all) { curl_slist_free_all(static_cast<curl_slist*>(all)); });
    set(CURLOPT_HTTPHEADER, list);
}

void CurlExchange::setMethod(const HttpRequest& request) {
    if (!url_.isHttp() || request.method == "GET") return;
    if (request.method == "HEAD") {
        set(CURLOPT_NOBODY, 1L);
        return;
    }
    set(CURLOPT_POSTFIELDS, request.body.c_str());
    set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(request.body.size()));
    if (request.method != "POST") set(CURLOPT_CUSTOMREQUEST, request.method.c_str());
}

template <class Value> void CurlExchange::set(int option, Value value) {
    const CURLcode code = curl_easy_setopt(handle_.get(), static_cast<CURLoption>(option), value);
    if (code != CURLE_OK) throw urlError(urlErrorCodeOf(code), url_.host());
}

std::size_t CurlExchange::keep(char* bytes, std::size_t size, std::size_t count, void* exchange) {
    auto& self = *static_cast<CurlExchange*>(exchange);
    const std::size_t length = size * count;
    if (length > self.mostBodyBytes_ - self.body_.size()) return 0; // less than was given: the transfer is ended
    self.body_.append(bytes, length);
    return length;
}

bool isHeaderOfBody(const std::string& name) {
    return ::strncasecmp(name.c_str(), "content-", 8) == 0 || ::strcasecmp(name.c_str(), "transfer-encoding") == 0;
}

} // namespace vesk
