#include "VeskShellCore/VeskAuthError.hpp"

#include <gtest/gtest.h>

namespace vesk {
namespace {

TEST(VeskAuthErrorTests, EachKindHasItsTextAndCode) {
    const auto url = VeskAuthError::invalidBaseURL("host:1");
    EXPECT_EQ(url.kind(), VeskAuthError::Kind::invalidBaseURL);
    EXPECT_EQ(url.description(), "Invalid Vesk auth base URL: host:1");
    EXPECT_EQ(url.code(), 1);
    EXPECT_EQ(url.domain(), "VeskAuthError");
    EXPECT_EQ(url.statusCode(), 0);

    const auto server = VeskAuthError::server(401, "That link has been used.");
    EXPECT_EQ(server.kind(), VeskAuthError::Kind::server);
    EXPECT_EQ(server.description(), "That link has been used.");
    EXPECT_EQ(server.code(), 2);
    EXPECT_EQ(server.statusCode(), 401);

    const auto response = VeskAuthError::invalidResponse();
    EXPECT_EQ(response.kind(), VeskAuthError::Kind::invalidResponse);
    EXPECT_EQ(response.description(), "The Vesk auth service returned an invalid response.");
    EXPECT_EQ(response.code(), 3);
}

} // namespace
} // namespace vesk
