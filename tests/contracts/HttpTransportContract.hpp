#pragma once

#include "VeskPlatform/HttpTransport.hpp"
#include "VeskSupport/ErrorRecord.hpp"
#include "VeskSupport/Json.hpp"
#include "tests/support/OnThreads.hpp"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace vesk::test {

/// What every HttpTransport owes. A `World` has `transport()`, `answering(status, body)`, a URL that is answered so,
/// `echo()`, one that is answered with the request as JSON, and `nobody()`, one where no server is.
template <class World> class HttpTransportContract : public ::testing::Test {
protected:
    World world;
    HttpTransport& transport() { return world.transport(); }
};

TYPED_TEST_SUITE_P(HttpTransportContract);

TYPED_TEST_P(HttpTransportContract, StatusAndBodyComeBack) {
    const std::pair<int, std::string> answers[] = {
        {200, "text"},          {204, ""}, {201, std::string("\0\xFF\r\n", 4)}, {401, R"({"error":"no"})"},
        {500, "<html></html>"}, {599, ""}};
    for (const auto& [status, body] : answers) {
        const HttpResponse response = this->transport().send({.url = this->world.answering(status, body)});
        EXPECT_EQ(response.status, status);
        EXPECT_EQ(response.body, body) << status;
    }
}

TYPED_TEST_P(HttpTransportContract, TheRequestArrivesAsItWasMade) {
    const auto response = this->transport().send({.url = this->world.echo(),
                                                  .method = "POST",
                                                  .headers = {{"content-type", "application/json"}, {"x-own", "1 2"}},
                                                  .body = "{\"a\":1}"});
    const JsonValue seen = parseJson(response.body);
    const auto& request = std::get<JsonValue::Object>(seen.value);
    EXPECT_EQ(request.at("method"), JsonValue{std::string("POST")});
    EXPECT_EQ(request.at("body"), JsonValue{std::string("{\"a\":1}")});
    const auto& headers = std::get<JsonValue::Object>(request.at("headers").value);
    EXPECT_EQ(headers.at("content-type"), JsonValue{std::string("application/json")});
    EXPECT_EQ(headers.at("x-own"), JsonValue{std::string("1 2")});
}

TYPED_TEST_P(HttpTransportContract, WhereNobodyAnswersThereIsNoConnection) {
    try {
        this->transport().send({.url = this->world.nobody()});
        FAIL();
    } catch (const ErrorRecord& error) {
        EXPECT_EQ(error.domain(), "NSURLErrorDomain");
        EXPECT_EQ(error.code(), -1004);
        EXPECT_FALSE(error.description().empty());
    }
}

TYPED_TEST_P(HttpTransportContract, RequestsMayOverlap) {
    std::vector<std::string> urls, bodies(8);
    for (std::size_t i = 0; i < bodies.size(); ++i) urls.push_back(this->world.answering(200, std::to_string(i)));
    onThreads(urls.size(), [&](std::size_t i) { bodies[i] = this->transport().send({.url = urls[i]}).body; });
    for (std::size_t i = 0; i < bodies.size(); ++i) EXPECT_EQ(bodies[i], std::to_string(i));
}

TYPED_TEST_P(HttpTransportContract, EveryStatusHasWords) {
    for (const int status : {100, 200, 404, 500, 599, 0, 1000})
        EXPECT_FALSE(this->transport().standardText(status).empty());
}

REGISTER_TYPED_TEST_SUITE_P(HttpTransportContract, StatusAndBodyComeBack, TheRequestArrivesAsItWasMade,
                            WhereNobodyAnswersThereIsNoConnection, RequestsMayOverlap, EveryStatusHasWords);

} // namespace vesk::test
