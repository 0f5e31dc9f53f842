#pragma once

#include "VeskPlatform/Linux/Secrets/SealedFileKeychain.hpp"
#include "VeskPlatform/Linux/SqliteUserDefaults.hpp"
#include "tests/support/HttpServer.hpp"
#include "tests/vesk/CompanionTest.hpp"

#include <fstream>
#include <iterator>
#include <optional>

namespace vesk::test {

/// The companion beside an auth service on loopback, whose authority it trusts; its secrets lie in the sealed file.
class SignInWorld : public CompanionTest {
protected:
    SignInWorld() {
        program.environment["SSL_CERT_FILE"] = server.authorityFile();
        program.environment["VESK_AUTH_BASE_URL"] = server.https();
    }

    HttpServer server;

    std::optional<std::string> secret(const std::string& account) const {
        return SealedFileKeychain({.folder = state(), .passphraseFile = "", .log = [](const std::string&) {}})
            .copy("Vesk", account)
            .bytes;
    }
    std::optional<std::string> defaultsData(const std::string& name) const {
        return SqliteUserDefaults(state()).data("app.veskhq.vesk.auth." + name);
    }
    std::string verifier() const { return textAt(parseJson(defaultsData("pending-session").value()), "codeVerifier"); }
    void start() const { EXPECT_EQ(textAt(json({"sign-in", "start", "Dana@Example.com"}), "status"), "sent"); }
    ProgramResult redeem(const std::string& grant, const std::vector<std::string>& options = {}) {
        std::vector<std::string> arguments{"sign-in", "redeem"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        program.input = grant;
        return vesk(arguments);
    }
    JsonValue status() const { return json({"sign-in", "status"}); }
    /// A service that answers so whatever it is asked.
    std::string answering(int code, const std::string& body) const {
        std::string digits;
        for (const char byte : body) {
            digits += "0123456789abcdef"[static_cast<unsigned char>(byte) >> 4];
            digits += "0123456789abcdef"[byte & 15];
        }
        return server.http() + "/answer/" + std::to_string(code) + "?body=" + digits;
    }
    static std::string bytesOf(const std::filesystem::path& path) {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
};

} // namespace vesk::test
