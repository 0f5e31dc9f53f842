#include "VeskShellCore/AuthModels.hpp"
#include "tests/VeskShellCore/AuthAnswers.hpp"
#include "tests/VeskShellCore/GoldenRecords.hpp"

namespace vesk::test {
namespace {

std::string replaced(std::string text, const std::string& what, const std::string& by) {
    const auto at = text.find(what);
    EXPECT_NE(at, std::string::npos) << what;
    return text.replace(at, what.size(), by);
}

TEST(AuthModels, TheStartRequestIsSnakeCase) {
    const std::string full = R"({
  "app_version" : "1.2",
  "client_state" : "state",
  "code_challenge" : "challenge",
  "code_challenge_method" : "S256",
  "email" : "dana@example.com",
  "installation_id" : "installation",
  "platform" : "linux"
})";
    EXPECT_EQ(expectGolden<AuthStartRequest>(full), (AuthStartRequest{.email = "dana@example.com",
                                                                      .installationID = "installation",
                                                                      .codeChallenge = "challenge",
                                                                      .clientState = "state",
                                                                      .appVersion = "1.2",
                                                                      .platform = "linux"}));
    const auto bare = expectGolden<AuthStartRequest>(replaced(full, "\n  \"app_version\" : \"1.2\",", ""));
    EXPECT_EQ(bare.appVersion, std::nullopt);
    expectRequired<AuthStartRequest>(
        full, {"email", "installation_id", "code_challenge", "code_challenge_method", "client_state", "platform"});
}

TEST(AuthModels, TheStartResponseNeedsBothFields) {
    const std::string json = "{\n  \"ok\" : false,\n  \"status\" : \"sent\"\n}";
    EXPECT_EQ(expectGolden<VeskAuthStartResponse>(json), (VeskAuthStartResponse{.ok = false, .status = "sent"}));
    expectRequired<VeskAuthStartResponse>(json, {"ok", "status"});
    EXPECT_THROW(fromJson<VeskAuthStartResponse>(parseJson(R"({"ok":1,"status":"sent"})")), DecodingError);
}

TEST(AuthModels, TheRedeemRequestIsSnakeCase) {
    const std::string full = R"({
  "app_version" : "1.2",
  "client_state" : "state",
  "code_verifier" : "verifier",
  "device_name" : "laptop",
  "grant" : "grant",
  "installation_id" : "installation"
})";
    EXPECT_EQ(expectGolden<AuthRedeemRequest>(full), (AuthRedeemRequest{.grant = "grant",
                                                                        .installationID = "installation",
                                                                        .codeVerifier = "verifier",
                                                                        .clientState = "state",
                                                                        .appVersion = "1.2",
                                                                        .deviceName = "laptop"}));
    expectRequired<AuthRedeemRequest>(full, {"grant", "installation_id", "code_verifier", "client_state"});
    auto bare = replaced(full, "\n  \"app_version\" : \"1.2\",", "");
    bare = replaced(bare, "\n  \"device_name\" : \"laptop\",", "");
    EXPECT_EQ(expectGolden<AuthRedeemRequest>(bare).deviceName, std::nullopt);
}

TEST(AuthModels, TheRedeemResponseNeedsEveryField) {
    const auto record = fromJson<VeskAuthRedeemResponse>(parseJson(redeemAnswer));
    EXPECT_EQ(record, (VeskAuthRedeemResponse{.ok = true,
                                              .accountEmail = "dana@example.com",
                                              .userID = "user-1",
                                              .deviceID = "device-1",
                                              .authToken = "planted-auth-token",
                                              .authTokenExpiresAt = 1'800'000'000,
                                              .openRouterAPIKey = "planted-router-key",
                                              .openRouterKeyHash = "planted-key-hash",
                                              .runtimeKey = {.id = "key-1",
                                                             .label = "Laptop",
                                                             .weeklyLimitUSD = 12.5,
                                                             .limitReset = "weekly",
                                                             .guardrailID = "guard-1"}}));
    EXPECT_EQ(toJson(record), parseJson(redeemAnswer));
    expectRequired<VeskAuthRedeemResponse>(redeemAnswer, {"ok", "account_email", "user_id", "device_id", "auth_token",
                                                          "auth_token_expires_at", "openrouter_api_key",
                                                          "openrouter_key_hash", "runtime_key"});
    expectRequired<VeskAuthRedeemResponse::RuntimeKey>(
        writeJson(toJson(record.runtimeKey)), {"id", "label", "weekly_limit_usd", "limit_reset", "guardrail_id"});
}

TEST(AuthModels, ResponsesDifferByEachField) {
    const auto record = fromJson<VeskAuthRedeemResponse>(parseJson(redeemAnswer));
    auto other = record;
    other.runtimeKey.weeklyLimitUSD = 13;
    EXPECT_NE(record, other);
    other = record;
    other.authToken += "x";
    EXPECT_NE(record, other);
}

TEST(AuthModels, NumbersKeepTheirKinds) {
    const auto expiring = [](const std::string& number) {
        return fromJson<VeskAuthRedeemResponse>(parseJson(replaced(redeemAnswer, "1800000000", number)))
            .authTokenExpiresAt;
    };
    EXPECT_EQ(expiring("9223372036854775807"), INT64_MAX);
    EXPECT_EQ(expiring("-1"), -1);
    EXPECT_EQ(expiring("3.0"), 3);
    for (const char* number : {"1.5", "9223372036854775808", "\"1\"", "null", "true"})
        EXPECT_THROW(expiring(number), DecodingError) << number;
    EXPECT_EQ(
        fromJson<VeskAuthRedeemResponse>(parseJson(replaced(redeemAnswer, "12.5", "12"))).runtimeKey.weeklyLimitUSD,
        12);
}

} // namespace
} // namespace vesk::test
