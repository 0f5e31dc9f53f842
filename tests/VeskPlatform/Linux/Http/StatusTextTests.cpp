#include "VeskPlatform/Linux/Http/StatusText.hpp"

#include <gtest/gtest.h>

namespace vesk {
namespace {

TEST(StatusText, HasTheStandardWordsOrThoseOfTheClass) {
    const std::pair<int, const char*> cases[] = {
        {100, "Continue"},
        {200, "OK"},
        {204, "No Content"},
        {308, "Permanent Redirect"},
        {401, "Unauthorized"},
        {404, "Not Found"},
        {429, "Too Many Requests"},
        {500, "Internal Server Error"},
        {503, "Service Unavailable"},
        {511, "Network Authentication Required"},
        {199, "Informational"},
        {299, "Successful"},
        {306, "Redirection"},
        {418, "Client Error"},
        {499, "Client Error"},
        {599, "Server Error"},
        {0, "Unknown Status"},
        {99, "Unknown Status"},
        {600, "Unknown Status"},
        {-1, "Unknown Status"},
    };
    for (const auto& [status, text] : cases) EXPECT_EQ(standardStatusText(status), text) << status;
}

} // namespace
} // namespace vesk
