#include "VeskPlatform/Linux/Http/CurlHttpTransport.hpp"
#include "VeskShellCore/VeskAuthClient.hpp"
#include "VeskShellCore/VeskAuthSessionStore.hpp"
#include "tests/fakes/FakePlatform.hpp"
#include "tests/fakes/RunTask.hpp"
#include "tests/support/HttpServer.hpp"

#include <gtest/gtest.h>

namespace vesk::test {
namespace {

/// A world of fakes but for the way to the service.
class ConnectedPlatform : public FakePlatform {
public:
    explicit ConnectedPlatform(const std::string& authorityFile)
        : curl({.file = authorityFile, .folder = std::nullopt}) {}
    CurlHttpTransport curl;
    HttpTransport& httpTransport() override { return curl; }
};

/// The client against a service on loopback.
class AuthServiceTests : public ::testing::Test {
protected:
    HttpServer server;
    ConnectedPlatform platform{server.authorityFile()};

    VeskAuthStartResponse start(const std::string& baseURL) {
        return runTask(VeskAuthClient(platform, baseURL)
                           .requestSignInLink("dana@example.com", "id", "challenge", "state", std::nullopt, "linux"));
    }
    std::int64_t code(const std::string& baseURL) {
        try {
            start(baseURL);
        } catch (const ErrorRecord& error) {
            failure = error.description();
            return error.code();
        }
        return 0;
    }
    std::string failure;
};

TEST_F(AuthServiceTests, AWholeSignInOverTls) {
    VeskAuthSessionStore store(platform);
    const auto prepared = store.prepareSignIn("Dana@example.com");
    const VeskAuthClient client(platform, server.https());
    const auto& session = prepared.pendingSession;
    EXPECT_EQ(runTask(client.requestSignInLink(session.email, prepared.installationID, prepared.codeChallenge,
                                               session.clientState, "1.0", "linux")),
              (VeskAuthStartResponse{.ok = true, .status = "sent"}));
    const auto redeemed = runTask(client.redeem("planted-grant", prepared.installationID, session.codeVerifier,
                                                session.clientState, "1.0", "laptop"));
    EXPECT_EQ(redeemed.authToken, "planted-auth-token");
    EXPECT_EQ(redeemed.runtimeKey.weeklyLimitUSD, 12.5);
}

TEST_F(AuthServiceTests, AnotherVerifierIsRefusedWithTheServicesWords) {
    VeskAuthSessionStore store(platform);
    const auto first = store.prepareSignIn("dana@example.com");
    const VeskAuthClient client(platform, server.https());
    runTask(client.requestSignInLink("dana@example.com", "id", first.codeChallenge, first.pendingSession.clientState,
                                     std::nullopt, "linux"));
    try {
        runTask(client.redeem("planted-grant", "id", "another verifier", first.pendingSession.clientState, std::nullopt,
                              std::nullopt));
        FAIL();
    } catch (const VeskAuthError& error) {
        EXPECT_EQ(error.statusCode(), 400);
        EXPECT_EQ(error.description(), "The sign-in was started elsewhere.");
    }
}

TEST_F(AuthServiceTests, AServiceThatMisbehavesHasItsFailure) {
    EXPECT_EQ(code(server.http() + "/answer/204?"), 3);
    EXPECT_EQ(code(server.http() + "/large/500/10"), 2);
    EXPECT_EQ(failure, "Internal Server Error");
    EXPECT_EQ(code(server.http() + "/large/200/10"), 3);
    EXPECT_EQ(code(server.http() + "/nowhere"), 2);
    EXPECT_EQ(failure, "There is no such place.");
    EXPECT_EQ(code(server.http() + "/cut"), -1005);
    EXPECT_EQ(code(server.wrongHost()), -1202);
    EXPECT_EQ(code(server.untrusted()), -1202);
    EXPECT_EQ(code("ftp://host"), -1002);
}

TEST_F(AuthServiceTests, ARedirectedServiceIsFollowed) {
    // The path lands in the query, so that the place is the one that is named.
    EXPECT_EQ(code(server.http() + "/redirect/307?to=" + server.https() + "/v1/auth/start&was="), 0);
    EXPECT_EQ(code(server.https() + "/redirect/307?to=" + server.http() + "/v1/auth/start&was="), -1022);
}

TEST_F(AuthServiceTests, AFileIsNoService) {
    TemporaryFolder folder;
    folder.write("v1/auth/start", R"({"ok":true,"status":"sent"})");
    EXPECT_EQ(code("file://" + folder.path()), 3);
}

} // namespace
} // namespace vesk::test
