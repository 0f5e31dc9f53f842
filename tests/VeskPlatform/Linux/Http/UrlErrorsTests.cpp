#include "VeskPlatform/Linux/Http/UrlErrors.hpp"

#include <curl/curl.h>
#include <gtest/gtest.h>

namespace vesk {
namespace {

TEST(UrlErrors, EachFailureOfCurlHasItsCode) {
    const std::pair<CURLcode, int> cases[] = {
        {CURLE_URL_MALFORMAT, -1000},        {CURLE_OPERATION_TIMEDOUT, -1001},
        {CURLE_COULDNT_RESOLVE_HOST, -1003}, {CURLE_COULDNT_RESOLVE_PROXY, -1003},
        {CURLE_COULDNT_CONNECT, -1004},      {CURLE_GOT_NOTHING, -1005},
        {CURLE_PARTIAL_FILE, -1005},         {CURLE_RECV_ERROR, -1005},
        {CURLE_SEND_ERROR, -1005},           {CURLE_UNSUPPORTED_PROTOCOL, -1011},
        {CURLE_WEIRD_SERVER_REPLY, -1011},   {CURLE_FILE_COULDNT_READ_FILE, -1100},
        {CURLE_WRITE_ERROR, -1103},          {CURLE_SSL_CONNECT_ERROR, -1200},
        {CURLE_SSL_CACERT_BADFILE, -1200},   {CURLE_PEER_FAILED_VERIFICATION, -1202},
        {CURLE_OUT_OF_MEMORY, -1},           {CURLE_LDAP_CANNOT_BIND, -1},
    };
    for (const auto& [code, expected] : cases)
        EXPECT_EQ(static_cast<int>(urlErrorCodeOf(code)), expected) << curl_easy_strerror(code);
}

TEST(UrlErrors, TheTextNamesTheHostWhereThereIsOne) {
    EXPECT_EQ(urlError(UrlErrorCode::timedOut, "auth.example").description(), "The request timed out. (auth.example)");
    EXPECT_EQ(urlError(UrlErrorCode::badURL, "").description(), "The URL is not valid.");
    EXPECT_EQ(urlError(UrlErrorCode::unknown, "host").code(), -1);
    EXPECT_EQ(urlError(UrlErrorCode::unknown, "host").domain(), "NSURLErrorDomain");
}

} // namespace
} // namespace vesk
