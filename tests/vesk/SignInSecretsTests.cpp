#include "tests/vesk/SignInWorld.hpp"

#include <algorithm>
#include <arpa/inet.h>
#include <csignal>
#include <functional>
#include <poll.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace vesk::test {
namespace {

namespace fs = std::filesystem;

/// A server that takes a connection and says nothing.
class SilentServer {
public:
    SilentServer() : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        if (::bind(socket_, reinterpret_cast<sockaddr*>(&address), size) != 0 || ::listen(socket_, 1) != 0
            || ::getsockname(socket_, reinterpret_cast<sockaddr*>(&address), &size) != 0)
            throw std::runtime_error("no server");
        port_ = ntohs(address.sin_port);
    }
    ~SilentServer() { ::close(socket_); }
    SilentServer(const SilentServer&) = delete;
    SilentServer& operator=(const SilentServer&) = delete;

    std::string url() const { return "http://127.0.0.1:" + std::to_string(port_); }
    /// Whether somebody connects before a deadline.
    bool waitForConnection() const {
        pollfd waiting{socket_, POLLIN, 0};
        return ::poll(&waiting, 1, 20'000) == 1;
    }
    /// Takes the waiting request and answers it after all.
    void answer(const std::string& body) const {
        const int connection = ::accept(socket_, nullptr, nullptr);
        const std::string answer =
            "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
        EXPECT_EQ(::send(connection, answer.data(), answer.size(), MSG_NOSIGNAL), static_cast<ssize_t>(answer.size()));
        std::string request(4096, '\0');
        while (::recv(connection, request.data(), request.size(), 0) > 0) {
        } // until the client has gone
        ::close(connection);
    }

private:
    int socket_;
    int port_ = 0;
};

constexpr const char* credentials =
    R"({"ok": true, "account_email": "dana@example.com", "user_id": "user-1", "device_id": "device-1",
        "auth_token": "planted-auth-token", "auth_token_expires_at": 1800000000,
        "openrouter_api_key": "planted-router-key", "openrouter_key_hash": "planted-key-hash",
        "runtime_key": {"id": "key-1", "label": "Laptop", "weekly_limit_usd": 12.5, "limit_reset": "weekly",
                        "guardrail_id": "guard-1"}})";

class SignInSecrets : public SignInWorld {
protected:
    SignInSecrets() {
        fs::create_directory(temporary);
        program.environment["TMPDIR"] = temporary.string();
    }

    const fs::path temporary = program.folder() / "tmp";

    /// Redeems at a service that never answers and, while it waits, does `meanwhile` with the process's number; then
    /// kills it.
    ProgramResult killedWhileRedeeming(const std::function<void(pid_t)>& meanwhile) {
        const SilentServer silent;
        program.launcher = {"/bin/sh", "-c", "echo $$ > process && exec \"$@\"", "sh"};
        ProgramResult result;
        std::thread running([&] { result = redeem("planted-grant", {"--base-url", silent.url()}); });
        const bool connected = silent.waitForConnection();
        const pid_t process = std::stoi(bytesOf(program.folder() / "process"));
        if (connected) meanwhile(process);
        ::kill(process, SIGKILL);
        running.join();
        program.launcher.clear();
        EXPECT_TRUE(connected);
        return result;
    }
    /// What holds one of the words, among the files of the run.
    std::vector<std::string> filesWith(const std::vector<std::string>& words) const {
        std::vector<std::string> found;
        for (const auto& entry : fs::recursive_directory_iterator(program.folder()))
            if (entry.is_regular_file() && holdsOne(bytesOf(entry.path()), words)) found.push_back(entry.path());
        return found;
    }
    static bool holdsOne(const std::string& text, const std::vector<std::string>& words) {
        return std::ranges::any_of(words,
                                   [&](const std::string& word) { return text.find(word) != std::string::npos; });
    }
};

TEST_F(SignInSecrets, AGrantOutlivesAKillAndIsRedeemedThen) {
    start();
    const ProgramResult killed = killedWhileRedeeming([](pid_t) {});
    EXPECT_EQ(killed.status, 128 + SIGKILL) << killed;
    EXPECT_EQ(secret("VESK_AUTH_TOKEN"), std::nullopt);
    EXPECT_EQ(at(status(), "grantPending"), JsonValue{true});
    const ProgramResult finished = redeem("", {"--pending"});
    EXPECT_EQ(finished.status, 0) << finished;
    EXPECT_EQ(secret("VESK_AUTH_TOKEN"), "planted-auth-token");
    EXPECT_EQ(at(status(), "grantPending"), JsonValue{false});
    EXPECT_FALSE(has(status(), "pendingEmail"));
}

TEST_F(SignInSecrets, ALinkThatIsAskedForWhileAnotherIsRedeemedStays) {
    start();
    const SilentServer late;
    program.input = "planted-grant";
    ProgramResult result;
    std::thread running([&] { result = vesk({"sign-in", "redeem", "--base-url", late.url()}); });
    const bool connected = late.waitForConnection();
    start();
    const std::string asked = verifier();
    if (connected) late.answer(credentials);
    running.join();
    EXPECT_TRUE(connected);
    EXPECT_EQ(result.status, 0) << result;
    EXPECT_EQ(secret("VESK_AUTH_TOKEN"), "planted-auth-token");
    EXPECT_EQ(verifier(), asked);
}

TEST_F(SignInSecrets, NoArgumentAndNoVariableOfAnyProcessHoldsOne) {
    start();
    const std::vector<std::string> planted{"planted-", verifier()};
    int looked = 0;
    killedWhileRedeeming([&](pid_t process) {
        for (const auto& entry : fs::directory_iterator("/proc"))
            if (fs::exists(entry.path() / "cmdline")) {
                EXPECT_FALSE(holdsOne(bytesOf(entry.path() / "cmdline"), planted)) << entry;
                ++looked;
            }
        const std::string environment = bytesOf("/proc/" + std::to_string(process) + "/environ");
        EXPECT_NE(environment.find("VESK_STATE_DIR"), std::string::npos);
        EXPECT_FALSE(holdsOne(environment, planted));
        // While it waits, nothing but the session itself has the verifier, and nothing has the grant in the clear.
        EXPECT_EQ(filesWith({planted[1]}), std::vector<std::string>{state() + "/defaults.sqlite"});
        EXPECT_EQ(filesWith({"planted-"}), std::vector<std::string>());
    });
    EXPECT_GT(looked, 1);
}

TEST_F(SignInSecrets, NoOutputNoErrorAndNoFileHoldsOne) {
    start();
    const std::vector<std::string> planted{"planted-", verifier(),
                                           textAt(parseJson(defaultsData("pending-session").value()), "clientState")};
    std::string said;
    for (const std::string& service :
         {answering(500, "<html>"), answering(200, R"({"auth_token":"planted-auth-token","ok":true})"),
          answering(200, "planted-auth-token"), answering(302, ""), server.http() + "/cut", server.http() + "/hang-up",
          server.http() + "/garbage", server.http() + "/redirect/302?to=https://planted-grant.invalid/&was=",
          server.untrusted(), std::string("planted:planted-grant@host"), std::string("ftp://planted-grant:x@host/")}) {
        const ProgramResult result = redeem("planted-grant", {"--base-url", service});
        EXPECT_EQ(result.status, 1) << result;
        if (service.find("planted-grant") == std::string::npos) said += result.output + result.errorOutput;
    }
    for (const auto& arguments : {std::vector<std::string>{"sign-in", "status"}, {"sign-in", "redeem", "--pending"}}) {
        const ProgramResult result = vesk(arguments);
        EXPECT_EQ(result.status, 0) << result;
        said += result.output + result.errorOutput;
    }
    EXPECT_FALSE(holdsOne(said, planted)) << said;
    EXPECT_EQ(secret("VESK_AUTH_TOKEN"), "planted-auth-token");
    EXPECT_EQ(filesWith(planted), std::vector<std::string>()) << "also not what the session's row has left behind";
    EXPECT_TRUE(fs::is_empty(temporary));
}

} // namespace
} // namespace vesk::test
