#include "VeskPlatform/Linux/Http/CurlHttpTransport.hpp"

#include "VeskPlatform/Linux/Http/CurlExchange.hpp"
#include "VeskPlatform/Linux/Http/StatusText.hpp"
#include "VeskPlatform/Linux/Http/UrlErrors.hpp"

#include <algorithm>
#include <curl/curl.h>
#include <mutex>

namespace vesk {
namespace {

using Clock = std::chrono::steady_clock;

/// From now; at least a moment, since none would be no limit at all.
std::chrono::milliseconds timeUntil(Clock::time_point end) {
    return std::max(std::chrono::milliseconds(1),
                    std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()));
}

/// Whether the next request keeps method and body. For the other statuses a browser asks for the new place with GET
/// (Fetch Standard, "HTTP-redirect fetch"; 303 for all methods, 301 and 302 for POST).
bool keepsMethod(int status, const std::string& method) {
    if (status == 303) return method == "HEAD";
    return status == 307 || status == 308 || method != "POST";
}

/// Says what a redirection asks for. Throws ErrorRecord for one that is not followed.
void redirect(HttpRequest& request, const HttpUrl& from, const CurlExchange::Answer& answer) {
    const HttpUrl to(*answer.redirection, from.host());
    if (!to.isHttp()) throw urlError(UrlErrorCode::unsupportedURL, from.host());
    if (from.scheme() == "https" && to.scheme() != "https")
        throw urlError(UrlErrorCode::requiresSecureConnection, from.host());
    request.url = *answer.redirection;
    if (keepsMethod(*answer.response.status, request.method)) return;
    request.method = "GET";
    std::erase_if(request.headers, [](const auto& header) { return isHeaderOfBody(header.first); });
}

} // namespace

CurlHttpTransport::CurlHttpTransport(CertificatePlaces certificates) : certificates_(std::move(certificates)) {
    static std::once_flag once;
    std::call_once(once, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
}

HttpResponse CurlHttpTransport::send(const HttpRequest& request) {
    const auto end = Clock::now() + request.timeout;
    HttpRequest next = request;
    for (int followed = 0;; ++followed) {
        const HttpUrl url(next.url, "");
        if (!url.isHttp() && url.scheme() != "file") throw urlError(UrlErrorCode::unsupportedURL, url.host());
        next.timeout = timeUntil(end);
        CurlExchange exchange(url, certificates_, mostBodyBytes);
        CurlExchange::Answer answer = exchange.run(next);
        if (!answer.redirection) return std::move(answer.response);
        if (followed == mostRedirections) throw urlError(UrlErrorCode::httpTooManyRedirects, url.host());
        redirect(next, url, answer);
    }
}

std::string CurlHttpTransport::standardText(int status) { return standardStatusText(status); }

} // namespace vesk
