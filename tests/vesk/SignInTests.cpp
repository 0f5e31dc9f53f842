#include "VeskPlatform/Linux/SqliteConnection.hpp"
#include "VeskShellCore/VeskAuthPKCE.hpp"
#include "tests/vesk/SignInWorld.hpp"

#include <unistd.h>

namespace vesk::test {
namespace {

using SignInProgram = SignInWorld;

const std::string invalidResponse = "The Vesk auth service returned an invalid response.";

TEST_F(SignInProgram, StartAsksForALinkAndKeepsTheSession) {
    const ProgramResult result = vesk({"sign-in", "start", " Dana@Example.COM "});
    EXPECT_EQ(result.status, 0) << result;
    EXPECT_EQ(result.output, "{\n  \"ok\" : true,\n  \"status\" : \"sent\"\n}\n") << result;
    EXPECT_EQ(result.errorOutput, "") << result;
    ASSERT_EQ(server.requests().size(), 1U);
    EXPECT_EQ(textAt(server.requests()[0], "path"), "/v1/auth/start");
    const JsonValue sent = parseJson(textAt(server.requests()[0], "body"));
    const JsonValue kept = parseJson(defaultsData("pending-session").value());
    EXPECT_EQ(textAt(sent, "email"), "dana@example.com");
    EXPECT_EQ(textAt(sent, "platform"), "linux");
    EXPECT_EQ(textAt(sent, "app_version"), textAt(json({"--version", "--json"}), "version"));
    EXPECT_EQ(textAt(sent, "installation_id"), textAt(status(), "installationID"));
    EXPECT_EQ(textAt(sent, "client_state"), textAt(kept, "clientState"));
    EXPECT_EQ(textAt(sent, "code_challenge"), VeskAuthPKCE::s256CodeChallenge(textAt(kept, "codeVerifier")));
}

TEST_F(SignInProgram, RedeemKeepsTheCredentialsAndShowsNone) {
    start();
    const ProgramResult result = redeem("planted-grant\n");
    EXPECT_EQ(result.status, 0) << result;
    EXPECT_EQ(result.errorOutput, "") << result;
    EXPECT_EQ(result.output, "{\n  \"accountEmail\" : \"dana@example.com\",\n  \"deviceID\" : \"device-1\",\n"
                             "  \"recoveryGrantCleared\" : true,\n  \"userID\" : \"user-1\"\n}\n");
    EXPECT_EQ(secret("VESK_AUTH_TOKEN"), "planted-auth-token");
    EXPECT_EQ(secret("OPENROUTER_API_KEY"), "planted-router-key");
    EXPECT_EQ(secret("VESK_AUTH_REDEEM_GRANT"), std::nullopt);
    EXPECT_EQ(defaultsData("pending-session"), std::nullopt);
    const JsonValue sent = parseJson(textAt(server.requests().back(), "body"));
    std::string host(256, '\0');
    ::gethostname(host.data(), host.size());
    EXPECT_EQ(textAt(sent, "device_name"), host.c_str());
    EXPECT_EQ(textAt(sent, "app_version"), textAt(json({"--version", "--json"}), "version"));
}

TEST_F(SignInProgram, WithoutAPendingSessionNothingIsRedeemedOrKept) {
    program.input = "planted-grant";
    expectFailure({"sign-in", "redeem"}, "No sign-in is waiting; begin with vesk sign-in start.");
    expectFailure({"sign-in", "redeem", "--pending"}, "No sign-in is waiting; begin with vesk sign-in start.");
    EXPECT_EQ(secret("VESK_AUTH_REDEEM_GRANT"), std::nullopt);
    EXPECT_EQ(server.requests().size(), 0U);
}

TEST_F(SignInProgram, WithoutAGrantNothingIsRedeemed) {
    start();
    for (const char* blank : {"", " \n", "\n"}) {
        program.input = blank;
        expectFailure({"sign-in", "redeem"}, "There is no grant on standard input.");
    }
    program.input = "";
    expectFailure({"sign-in", "redeem", "--pending"}, "No grant is kept from an earlier try.");
    EXPECT_EQ(server.requests().size(), 1U);
}

TEST_F(SignInProgram, ARefusedGrantStaysForTheNextTry) {
    start();
    const ProgramResult refused = redeem(" other-grant\n");
    EXPECT_EQ(refused.status, 1) << refused;
    EXPECT_EQ(refused.output, "");
    EXPECT_EQ(refused.errorOutput, "vesk: This link has been used.\n");
    EXPECT_EQ(secret("VESK_AUTH_REDEEM_GRANT"), "other-grant");
    EXPECT_EQ(secret("VESK_AUTH_TOKEN"), std::nullopt);
    EXPECT_EQ(at(status(), "grantPending"), JsonValue{true});
    EXPECT_EQ(textAt(status(), "pendingEmail"), "dana@example.com");
    // A newer grant takes its place.
    EXPECT_EQ(redeem("planted-grant").status, 0);
    EXPECT_EQ(at(status(), "grantPending"), JsonValue{false});
}

TEST_F(SignInProgram, AKeptGrantIsRedeemedWhenTheServiceIsBack) {
    start();
    EXPECT_EQ(redeem("planted-grant", {"--base-url", "http://127.0.0.1:1"}).status, 1);
    const ProgramResult result = redeem("", {"--pending"});
    EXPECT_EQ(result.status, 0) << result;
    EXPECT_EQ(secret("VESK_AUTH_TOKEN"), "planted-auth-token");
    EXPECT_EQ(secret("VESK_AUTH_REDEEM_GRANT"), std::nullopt);
}

TEST_F(SignInProgram, OnlyTheNewestLinkCanBeRedeemed) {
    start();
    const std::string first = verifier();
    start();
    EXPECT_NE(verifier(), first);
    EXPECT_EQ(redeem("planted-grant").status, 0);
    EXPECT_EQ(textAt(parseJson(textAt(server.requests().back(), "body")), "code_verifier").find(first),
              std::string::npos);
}

TEST_F(SignInProgram, AServiceThatMisbehavesIsToldInOneLine) {
    start();
    program.input = "planted-grant";
    const auto fails = [&](const std::string& baseURL, const std::string& text) {
        expectFailure({"sign-in", "redeem", "--base-url", baseURL}, text);
        expectFailure({"sign-in", "start", "dana@example.com", "--base-url", baseURL}, text);
    };
    fails(answering(500, "<html>Oops</html>"), "Internal Server Error");
    fails(answering(401, R"({"error":"Not\nyou."})"), "Not you.");
    fails(answering(204, ""), invalidResponse);
    fails(answering(200, "{}"), invalidResponse);
    fails(server.http() + "/large/500/10", "Internal Server Error");
    fails(server.http() + "/cut", "The connection to the server was lost. (127.0.0.1)");
    fails(server.wrongHost(), "The server's certificate is not trusted. (127.0.0.1)");
    fails(server.untrusted(), "The server's certificate is not trusted. (127.0.0.1)");
    fails("http://127.0.0.1:1", "No connection to the server could be made. (127.0.0.1)");
    fails("file:///etc", "The file does not exist.");
    fails("localhost:1", "The URL is not valid.");
}

TEST_F(SignInProgram, TheServiceIsTheVariablesAndMustBeAURL) {
    program.environment["VESK_AUTH_BASE_URL"] = " ";
    expectFailure({"sign-in", "start", "dana@example.com"}, "Invalid Vesk auth base URL: ");
    program.environment["VESK_AUTH_BASE_URL"] = "localhost:8080";
    expectFailure({"sign-in", "start", "dana@example.com"}, "Invalid Vesk auth base URL: localhost:8080");
    EXPECT_EQ(defaultsData("pending-session"), std::nullopt);
    EXPECT_EQ(textAt(json({"sign-in", "start", "dana@example.com", "--base-url", server.http()}), "status"), "sent");
}

TEST_F(SignInProgram, StatusTellsWhatIsPending) {
    const JsonValue fresh = status();
    EXPECT_EQ(textAt(fresh, "installationID").size(), 36U);
    EXPECT_FALSE(has(fresh, "pendingEmail"));
    EXPECT_FALSE(has(fresh, "pendingSince"));
    EXPECT_EQ(at(fresh, "grantPending"), JsonValue{false});
    EXPECT_EQ(at(fresh, "invalidated"), JsonValue{false});
    start();
    const JsonValue pending = status();
    EXPECT_EQ(textAt(pending, "installationID"), textAt(fresh, "installationID"));
    EXPECT_EQ(textAt(pending, "pendingEmail"), "dana@example.com");
    EXPECT_THAT(textAt(pending, "pendingSince"), ::testing::MatchesRegex("20..-..-..T..:..:..Z"));
}

TEST_F(SignInProgram, AnInvalidatedSignInIsTold) {
    const auto marker = program.folder() / "Library/Application Support/Vesk/data/vesk-auth-invalidated.json";
    std::filesystem::create_directories(marker.parent_path());
    std::ofstream(marker) << "";
    program.environment["VESK_APP_SUPPORT_DIR"] = "/elsewhere";
    EXPECT_EQ(at(status(), "invalidated"), JsonValue{true});
}

TEST_F(SignInProgram, StatusIsToldAlsoWhereTheSecretsCannotBeRead) {
    start();
    redeem("other-grant");
    std::filesystem::remove(state() + "/secrets.key");
    const JsonValue told = status();
    EXPECT_FALSE(has(told, "grantPending"));
    EXPECT_EQ(textAt(told, "pendingEmail"), "dana@example.com");
}

TEST_F(SignInProgram, WithoutAPlaceForTheGrantNothingIsRedeemed) {
    start();
    redeem("other-grant");
    std::filesystem::remove(state() + "/secrets.key");
    const auto sent = server.requests().size();
    const ProgramResult result = redeem("planted-grant");
    EXPECT_EQ(result.status, 1) << result;
    EXPECT_THAT(result.errorOutput, ::testing::HasSubstr("(OSStatus -26275)")) << result;
    EXPECT_EQ(server.requests().size(), sent);
}

TEST_F(SignInProgram, WhereNothingCanBeKeptNoLinkIsAskedFor) {
    std::ofstream(program.folder() / "file") << "";
    program.environment["VESK_STATE_DIR"] = (program.folder() / "file").string();
    expectFailure({"sign-in", "start", "dana@example.com"}, "The sign-in cannot be kept in the state folder.");
    EXPECT_EQ(server.requests().size(), 0U);
}

TEST_F(SignInProgram, CancelForgetsSessionAndGrant) {
    start();
    redeem("other-grant");
    const std::string installation = textAt(status(), "installationID");
    EXPECT_EQ(vesk({"sign-in", "cancel"}).output, "{\n\n}\n");
    const JsonValue after = status();
    EXPECT_FALSE(has(after, "pendingEmail"));
    EXPECT_EQ(at(after, "grantPending"), JsonValue{false});
    EXPECT_EQ(textAt(after, "installationID"), installation);
    EXPECT_EQ(vesk({"sign-in", "cancel"}).status, 0);
}

TEST_F(SignInProgram, ASessionThatCannotBeForgottenIsTold) {
    start();
    redeem("other-grant");
    SqliteConnection(state() + "/defaults.sqlite", std::chrono::seconds(5))
        .run("CREATE TRIGGER kept BEFORE DELETE ON defaults BEGIN SELECT RAISE(ABORT, 'kept'); END");
    expectFailure({"sign-in", "cancel"}, "The sign-in cannot be removed from the state folder.");
    EXPECT_EQ(at(status(), "grantPending"), JsonValue{false});
}

TEST_F(SignInProgram, AWrongCommandLineShowsItsUsage) {
    expectUsage({"sign-in", "start", " "}, "vesk sign-in start", "EMAIL names nobody.");
    expectUsage({"sign-in"}, "vesk sign-in", "A subcommand is required");
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{"sign-in", "start"},
                                                      {"sign-in", "start", "a@b", "--pending"},
                                                      {"sign-in", "redeem", "planted-grant"},
                                                      {"sign-in", "status", "--base-url", "https://host"},
                                                      {"sign-in", "out"}})
        EXPECT_EQ(vesk(arguments).status, 2) << arguments.back();
    EXPECT_FALSE(std::filesystem::exists(state()));
}

} // namespace
} // namespace vesk::test
