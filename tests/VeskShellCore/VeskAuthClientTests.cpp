#include "VeskShellCore/VeskAuthClient.hpp"
#include "tests/VeskShellCore/AuthAnswers.hpp"
#include "tests/fakes/FakePlatform.hpp"
#include "tests/fakes/RunTask.hpp"

#include <asio/co_spawn.hpp>
#include <future>
#include <gtest/gtest.h>

namespace vesk::test {
namespace {

constexpr const char* origin = "https://auth.vesk.example";

class VeskAuthClientTests : public testing::Test {
protected:
    FakePlatform platform;

    VeskAuthClient client() { return VeskAuthClient(platform, origin); }
    VeskAuthStartResponse start() {
        return runTask(
            client().requestSignInLink("dana@example.com", "installation", "challenge", "state", "1.2", "linux"));
    }
    VeskAuthRedeemResponse redeem() {
        return runTask(client().redeem("grant", "installation", "verifier", "state", std::nullopt, std::nullopt));
    }
    HttpRequest onlyRequest() {
        EXPECT_EQ(platform.fakeHttpTransport.requests.size(), 1U);
        return platform.fakeHttpTransport.requests.at(0);
    }
    /// The failure of a start or a redemption that is answered so.
    template <class Call> VeskAuthError failure(Call call, std::optional<int> status, std::string body) {
        platform.fakeHttpTransport.answers = {{status, std::move(body)}};
        try {
            call();
        } catch (const VeskAuthError& error) {
            return error;
        }
        ADD_FAILURE() << "no failure";
        return VeskAuthError::server(0, "no failure");
    }
    VeskAuthError startFailure(std::optional<int> status, std::string body) {
        return failure([this] { start(); }, status, std::move(body));
    }
    VeskAuthError redeemFailure(std::optional<int> status, std::string body) {
        return failure([this] { redeem(); }, status, std::move(body));
    }
    std::string refusedBaseURL() {
        try {
            client();
        } catch (const VeskAuthError& error) {
            EXPECT_EQ(error.kind(), VeskAuthError::Kind::invalidBaseURL);
            return error.description();
        }
        return "accepted";
    }
    void setVariable(const std::string& value) { platform.fakeEnvironment.variables["VESK_AUTH_BASE_URL"] = value; }
};

TEST_F(VeskAuthClientTests, TheDeploymentsURLIsTheDefault) { EXPECT_EQ(client().baseURL(), origin); }

TEST_F(VeskAuthClientTests, TheVariableComesBeforeTheDefault) {
    setVariable(" \n http://127.0.0.1:8080/base\t ");
    EXPECT_EQ(client().baseURL(), "http://127.0.0.1:8080/base");
    setVariable("gopher://anything");
    EXPECT_EQ(client().baseURL(), "gopher://anything");
}

TEST_F(VeskAuthClientTests, AVariableOfBlanksIsRefusedAndNotPassedOver) {
    for (const char* blank : {"", " ", "\n\t", "\xC2\xA0"}) {
        setVariable(blank);
        EXPECT_EQ(refusedBaseURL(), "Invalid Vesk auth base URL: ") << "\"" << blank << "\"";
    }
}

TEST_F(VeskAuthClientTests, AURLWithoutASchemeIsRefused) {
    for (const std::string text : {"localhost:8080", "auth.vesk.example", "//host/path", "https://a host"}) {
        setVariable(" " + text + " ");
        EXPECT_EQ(refusedBaseURL(), "Invalid Vesk auth base URL: " + text);
    }
}

TEST_F(VeskAuthClientTests, AGivenURLIsTakenAsItStands) {
    setVariable("");
    for (const char* text : {"localhost:8080", "", " https://host ", "no URL at all"})
        EXPECT_EQ(VeskAuthClient(platform, origin, text).baseURL(), text);
}

TEST_F(VeskAuthClientTests, StartSendsTheRequest) {
    platform.fakeHttpTransport.answer(200, R"({"ok":true,"status":"sent","more":1})");
    EXPECT_EQ(start(), (VeskAuthStartResponse{.ok = true, .status = "sent"}));
    const HttpRequest request = onlyRequest();
    EXPECT_EQ(request.url, "https://auth.vesk.example/v1/auth/start");
    EXPECT_EQ(request.method, "POST");
    EXPECT_EQ(request.headers, (std::map<std::string, std::string>{{"content-type", "application/json"}}));
    EXPECT_EQ(request.timeout, std::chrono::seconds(60));
    EXPECT_EQ(request.body, R"({"app_version":"1.2","client_state":"state","code_challenge":"challenge",)"
                            R"("code_challenge_method":"S256","email":"dana@example.com",)"
                            R"("installation_id":"installation","platform":"linux"})");
}

TEST_F(VeskAuthClientTests, RedeemSendsTheRequest) {
    platform.fakeHttpTransport.answer(200, redeemAnswer);
    const VeskAuthRedeemResponse answer = redeem();
    EXPECT_EQ(answer.authToken, "planted-auth-token");
    EXPECT_EQ(answer.runtimeKey.weeklyLimitUSD, 12.5);
    const HttpRequest request = onlyRequest();
    EXPECT_EQ(request.url, "https://auth.vesk.example/v1/auth/redeem");
    EXPECT_EQ(request.method, "POST");
    EXPECT_EQ(request.body, R"({"client_state":"state","code_verifier":"verifier","grant":"grant",)"
                            R"("installation_id":"installation"})");
}

TEST_F(VeskAuthClientTests, OptionalFieldsAreSentWhereTheyAreGiven) {
    platform.fakeHttpTransport.answer(200, redeemAnswer);
    runTask(client().redeem("grant", "installation", "verifier", "state", "1.2", "laptop"));
    const JsonValue body = parseJson(onlyRequest().body);
    const auto& fields = std::get<JsonValue::Object>(body.value);
    EXPECT_EQ(fields.at("app_version"), JsonValue{std::string("1.2")});
    EXPECT_EQ(fields.at("device_name"), JsonValue{std::string("laptop")});
}

TEST_F(VeskAuthClientTests, ThePathGoesBehindTheBaseURLs) {
    platform.fakeHttpTransport.answer(200, R"({"ok":true,"status":"sent"})");
    const VeskAuthClient based(platform, origin, "http://host/base/?tenant=1");
    runTask(based.requestSignInLink("", "", "", "", std::nullopt, ""));
    EXPECT_EQ(onlyRequest().url, "http://host/base/v1/auth/start?tenant=1");
    EXPECT_EQ(onlyRequest().body.find("app_version"), std::string::npos);
}

TEST_F(VeskAuthClientTests, AnyStatusOfThe200sIsASuccess) {
    for (const int status : {200, 201, 226, 299}) {
        platform.fakeHttpTransport.answer(status, R"({"ok":false,"status":"rate limited"})");
        EXPECT_EQ(start(), (VeskAuthStartResponse{.ok = false, .status = "rate limited"})) << status;
    }
}

TEST_F(VeskAuthClientTests, AnEnvelopesTextIsTheDescription) {
    for (const int status : {199, 300, 400, 401, 500}) {
        const auto error = startFailure(status, R"({"error":"This link\nhas been used.","code":7})");
        EXPECT_EQ(error.kind(), VeskAuthError::Kind::server) << status;
        EXPECT_EQ(error.statusCode(), status);
        EXPECT_EQ(error.description(), "This link\nhas been used.");
    }
    EXPECT_EQ(redeemFailure(401, R"({"error":""})").description(), "");
}

TEST_F(VeskAuthClientTests, WithoutAnEnvelopeTheStatusHasItsText) {
    for (const char* body : {"<html><h1>Oops</h1></html>", "", "[]", R"({"error":7})", R"({"message":"no"})", "null"}) {
        const auto error = redeemFailure(500, body);
        EXPECT_EQ(error.kind(), VeskAuthError::Kind::server) << body;
        EXPECT_EQ(error.description(), "status 500") << body;
    }
}

TEST_F(VeskAuthClientTests, ASuccessThatDoesNotDecodeIsInvalid) {
    for (const char* body : {"", "{", "<html></html>", R"({"ok":true})", R"({"ok":"yes","status":"sent"})"}) {
        const auto error = startFailure(200, body);
        EXPECT_EQ(error.kind(), VeskAuthError::Kind::invalidResponse) << body;
    }
    EXPECT_EQ(startFailure(204, "").description(), "The Vesk auth service returned an invalid response.");
}

TEST_F(VeskAuthClientTests, ARedeemResponseIsWholeOrInvalid) {
    std::string fractional = redeemAnswer, keyless = redeemAnswer;
    fractional.replace(fractional.find("1800000000"), 10, "1800000000.5");
    keyless.replace(keyless.find("runtime_key"), 11, "runtime_kez");
    for (const std::string& body : {fractional, keyless}) {
        const auto error = redeemFailure(200, body);
        EXPECT_EQ(error.kind(), VeskAuthError::Kind::invalidResponse) << body;
        EXPECT_EQ(error.description().find("planted"), std::string::npos);
        EXPECT_EQ(error.underlying(), nullptr);
    }
}

TEST_F(VeskAuthClientTests, AnAnswerThatIsNoHttpIsInvalid) {
    EXPECT_EQ(startFailure(std::nullopt, R"({"ok":true,"status":"sent"})").kind(),
              VeskAuthError::Kind::invalidResponse);
}

TEST_F(VeskAuthClientTests, FailuresOfTheTransportPassUnchangedAndNothingIsRetried) {
    try {
        start();
        FAIL();
    } catch (const ErrorRecord& error) {
        EXPECT_EQ(error.domain(), "NSURLErrorDomain");
        EXPECT_EQ(error.code(), -1004);
    }
    EXPECT_EQ(platform.fakeHttpTransport.requests.size(), 1U);
    EXPECT_EQ(startFailure(503, "").statusCode(), 503);
    EXPECT_EQ(platform.fakeHttpTransport.requests.size(), 2U);
}

TEST_F(VeskAuthClientTests, TheCallerIsSuspendedAndNotBlocked) {
    std::promise<void> released;
    platform.fakeHttpTransport.serve = [&](const HttpRequest&) {
        released.get_future().wait();
        return HttpResponse{200, R"({"ok":true,"status":"sent"})"};
    };
    asio::io_context context;
    auto answer =
        asio::co_spawn(context, client().requestSignInLink("", "", "", "", std::nullopt, ""), asio::use_future);
    asio::post(context, [&] { asio::post(context, [&] { released.set_value(); }); });
    context.run();
    EXPECT_EQ(answer.get().status, "sent");
}

} // namespace
} // namespace vesk::test
