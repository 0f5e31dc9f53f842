#include "VeskPlatform/Linux/PropertyList.hpp"
#include "tests/support/PrivateKeyring.hpp"
#include "tests/vesk/CompanionTest.hpp"

#include <chrono>
#include <csignal>
#include <fstream>
#include <future>
#include <set>
#include <sys/stat.h>

namespace vesk::test {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;
using ::testing::Not;

constexpr const char* nothing = "{\n\n}\n";

class SecretsProgram : public CompanionTest {
protected:
    ProgramResult set(const std::string& account, const std::string& secret,
                      const std::vector<std::string>& more = {}) {
        program.input = secret;
        std::vector<std::string> arguments{"secrets", "set", account};
        arguments.insert(arguments.end(), more.begin(), more.end());
        const ProgramResult result = vesk(arguments);
        program.input.clear();
        return result;
    }
    std::optional<std::string> secret(const std::string& account) const {
        const JsonValue answer = json({"secrets", "read", account});
        EXPECT_EQ(textAt(answer, "account"), account);
        return has(answer, "secret") ? std::optional(textAt(answer, "secret")) : std::nullopt;
    }
    std::string inFolder(const std::string& name) const { return (program.folder() / name).string(); }
    static std::string contents(const std::string& path) {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    std::string archive(const PropertyListValue& list, const std::string& name = "archive.plist") const {
        std::ofstream(inFolder(name), std::ios::binary) << LibplistCoder().encodeBinary(list);
        return inFolder(name);
    }
    static std::set<std::string> names(const JsonValue::Array& list) {
        std::set<std::string> result;
        for (const JsonValue& each : list) result.insert(std::get<std::string>(each.value));
        return result;
    }
    std::string log() const { return contents(inFolder("Library/Application Support/Vesk/logs/shell-debug.log")); }
};

TEST_F(SecretsProgram, ASecretIsSetReadAndDeleted) {
    EXPECT_EQ(secret("OPENAI_API_KEY"), std::nullopt);
    const ProgramResult result = set("OPENAI_API_KEY", "schlüssel\n");
    EXPECT_EQ(result.status, 0) << result;
    EXPECT_EQ(result.output, nothing) << result;
    EXPECT_EQ(secret("OPENAI_API_KEY"), "schlüssel");
    EXPECT_EQ(vesk({"secrets", "delete", "OPENAI_API_KEY"}).output, nothing);
    EXPECT_EQ(vesk({"secrets", "delete", "OPENAI_API_KEY"}).status, 0) << "what is not there";
    EXPECT_EQ(secret("OPENAI_API_KEY"), std::nullopt);
}

TEST_F(SecretsProgram, BlanksAroundAccountAndSecretCountForNothing) {
    EXPECT_EQ(set(" A ", " secret \n\n").status, 0);
    EXPECT_EQ(secret("A"), "secret");
    EXPECT_EQ(textAt(json({"secrets", "read", " A "}), "account"), "A");
}

TEST_F(SecretsProgram, AServiceOfItsOwnIsApart) {
    EXPECT_EQ(set("A", "other", {"--service", "Other"}).status, 0);
    EXPECT_EQ(secret("A"), std::nullopt);
    EXPECT_EQ(textAt(json({"secrets", "read", "A", "--service", "Other"}), "secret"), "other");
    EXPECT_EQ(vesk({"secrets", "delete", "A", "--service", "Other"}).status, 0);
    EXPECT_FALSE(has(json({"secrets", "read", "A", "--service", "Other"}), "secret"));
}

TEST_F(SecretsProgram, PresenceTellsTheTenAccounts) {
    EXPECT_EQ(set("ZAI_API_KEY", "x").status, 0);
    const JsonValue answer = json({"secrets", "presence"});
    const auto& accounts = std::get<JsonValue::Object>(answer.value);
    EXPECT_EQ(accounts.size(), 10U);
    for (const auto& [account, isThere] : accounts)
        EXPECT_EQ(std::get<bool>(isThere.value), account == "ZAI_API_KEY") << account;
    EXPECT_EQ(json({"secrets", "presence", "--service", "Vesk Release Rehearsal 1"}).value.index(),
              answer.value.index());
    expectFailure({"secrets", "presence", "--service", "Vesk Release Rehearsal"},
                  "Refusing to use unsupported Keychain service: Vesk Release Rehearsal");
}

TEST_F(SecretsProgram, AnExportIsAnArchiveThatRehearses) {
    EXPECT_EQ(set("ZAI_API_KEY", "secret").status, 0);
    EXPECT_EQ(set("OPENAI_API_KEY", "").status, 0);
    EXPECT_EQ(set("VESK_AUTH_REDEEM_GRANT", "grant").status, 0);
    std::ofstream(inFolder("archive")) << "former";
    ::chmod(inFolder("archive").c_str(), 0644);
    const JsonValue answer = json({"secrets", "export", "archive"});
    EXPECT_EQ(textAt(answer, "file"), inFolder("archive"));
    EXPECT_EQ(names(listAt(answer, "accounts")), (std::set<std::string>{"OPENAI_API_KEY", "ZAI_API_KEY"}));
    EXPECT_EQ(fs::status(inFolder("archive")).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_TRUE(contents(inFolder("archive")).starts_with("bplist00"));
    EXPECT_THAT(contents(inFolder("archive")), Not(HasSubstr("grant")));
    EXPECT_EQ(std::get<bool>(at(json({"secrets", "rehearse", "archive"}), "matches").value), true);
    EXPECT_EQ(secret("ZAI_API_KEY"), "secret");
}

TEST_F(SecretsProgram, AnExportOfNothingRehearsesToo) {
    EXPECT_TRUE(listAt(json({"secrets", "export", "archive"}), "accounts").empty());
    EXPECT_EQ(std::get<bool>(at(json({"secrets", "rehearse", "archive"}), "matches").value), true);
}

TEST_F(SecretsProgram, AnExportDoesNotGoThroughALinkNorOverAFolder) {
    EXPECT_EQ(set("ZAI_API_KEY", "secret").status, 0);
    std::ofstream(inFolder("target")) << "former";
    fs::create_symlink("target", inFolder("link"));
    expectFailure({"secrets", "export", "link"}, inFolder("link") + ": Too many levels of symbolic links");
    EXPECT_EQ(contents(inFolder("target")), "former");
    fs::create_symlink("nothing", inFolder("dangling"));
    vesk({"secrets", "export", "dangling"});
    EXPECT_FALSE(fs::exists(inFolder("nothing")));
    fs::create_directory(inFolder("folder"));
    EXPECT_EQ(vesk({"secrets", "export", "folder"}).status, 1);
    EXPECT_EQ(vesk({"secrets", "export", "missing/archive"}).status, 1);
}

TEST_F(SecretsProgram, AnExportTakesNoPlaceOfAPipe) {
    ASSERT_EQ(::mkfifo(inFolder("pipe").c_str(), 0600), 0);
    expectFailure({"secrets", "export", "pipe"}, inFolder("pipe") + ": Invalid argument");
    EXPECT_TRUE(fs::is_fifo(inFolder("pipe")));
}

TEST_F(SecretsProgram, OnlyTheLiveServiceIsExported) {
    expectFailure({"secrets", "export", "archive", "--service", "Vesk Release Rehearsal 1"},
                  "Refusing to use unsupported Keychain service: Vesk Release Rehearsal 1");
    EXPECT_FALSE(fs::exists(inFolder("archive")));
}

TEST_F(SecretsProgram, ArchivesThatAreNoneAreRefused) {
    std::ofstream(inFolder("text")) << "planted-secret";
    expectFailure({"secrets", "rehearse", "text"}, "The data is not a valid property list.");
    archive({PropertyListValue::Dictionary{{"schemaVersion", {std::int64_t{1}}}}}, "few");
    expectFailure({"secrets", "rehearse", "few"}, "The data cannot be read: sourceService is missing.");
    archive({PropertyListValue::Dictionary{{"schemaVersion", {std::int64_t{2}}},
                                           {"sourceService", {std::string("Vesk")}},
                                           {"accounts", {PropertyListValue::Array{}}},
                                           {"values", {PropertyListValue::Dictionary{}}}}},
            "newer");
    expectFailure({"secrets", "rehearse", "newer"}, "Unsupported secret archive schema.");
    expectFailure({"secrets", "rehearse", "missing"}, inFolder("missing") + ": No such file or directory");
    EXPECT_FALSE(fs::exists(state())) << "no store was touched";
}

TEST_F(SecretsProgram, WhatMeansNothingIsAUsageError) {
    expectUsage({"secrets"}, "vesk secrets", "A subcommand is required");
    expectUsage({"secrets", "read"}, "vesk secrets read", "account is required");
    expectUsage({"secrets", "set", " "}, "vesk secrets set", "ACCOUNT names nothing.");
    expectUsage({"secrets", "export", ""}, "vesk secrets export", "FILE names nothing.");
    EXPECT_EQ(vesk({"secrets", "set", "A", "the-secret"}).status, 2) << "secrets are no arguments";
}

TEST_F(SecretsProgram, ASecretThatIsNoTextIsRefused) {
    const ProgramResult result = set("A", "planted\xff");
    EXPECT_EQ(result.status, 1) << result;
    EXPECT_THAT(result.errorOutput, Not(HasSubstr("planted"))) << result;
    EXPECT_EQ(secret("A"), std::nullopt);
}

TEST_F(SecretsProgram, AKeyFileThatOthersMayReadIsToldInTheLogAndByTheDoctor) {
    EXPECT_EQ(set("A", "secret").status, 0);
    EXPECT_EQ(log(), "");
    ::chmod((state() + "/secrets.key").c_str(), 0644);
    expectFailure({"secrets", "read", "A"}, "Unable to read Keychain item for A. (OSStatus -25293)");
    EXPECT_THAT(log(), HasSubstr("is refused: others may use it"));
    const JsonValue found = listAt(at(json({"doctor", "--json"}), "secrets"), "findings").at(0);
    EXPECT_THAT(textAt(found, "problem"), HasSubstr("secrets.key is refused: others may use it"));
}

TEST_F(SecretsProgram, APassphraseFileOpensTheStore) {
    std::ofstream(inFolder("passphrase")) << "a passphrase\n";
    ::chmod(inFolder("passphrase").c_str(), 0600);
    program.environment["VESK_SECRETS_PASSPHRASE_FILE"] = inFolder("passphrase");
    EXPECT_EQ(set("A", "secret").status, 0);
    EXPECT_EQ(secret("A"), "secret");
    EXPECT_THAT(textAt(at(json({"doctor", "--json"}), "secrets"), "service"), HasSubstr("(sealed with a passphrase)"));
    program.environment.erase("VESK_SECRETS_PASSPHRASE_FILE");
    expectFailure({"secrets", "read", "A"}, "Unable to read Keychain item for A. (OSStatus -25308)");
}

class KeyringProgram : public SecretsProgram {
protected:
    KeyringProgram() { program.environment["DBUS_SESSION_BUS_ADDRESS"] = keyring.address(); }

    PrivateKeyring keyring;
};

TEST_F(KeyringProgram, TheKeyringHoldsTheSecretsAndNoFileDoes) {
    EXPECT_EQ(set("OPENAI_API_KEY", "first").status, 0);
    EXPECT_EQ(set("OPENAI_API_KEY", "second").status, 0);
    EXPECT_EQ(secret("OPENAI_API_KEY"), "second");
    EXPECT_EQ(textAt(json({"secrets", "export", "archive"}), "file"), inFolder("archive"));
    EXPECT_EQ(std::get<bool>(at(json({"secrets", "rehearse", "archive"}), "matches").value), true);
    EXPECT_EQ(vesk({"secrets", "delete", "OPENAI_API_KEY"}).status, 0);
    EXPECT_EQ(secret("OPENAI_API_KEY"), std::nullopt);
    EXPECT_FALSE(fs::exists(state()));
}

TEST_F(KeyringProgram, SecretToolAndTheCompanionShareTheirSecrets) {
    ProgramRun tool("/usr/bin/secret-tool");
    tool.environment["DBUS_SESSION_BUS_ADDRESS"] = keyring.address();
    tool.input = "from the tool";
    const ProgramResult stored = tool.run({"store", "--label=x", "service", "Vesk", "account", "ZAI_API_KEY"});
    EXPECT_EQ(stored.status, 0) << stored;
    EXPECT_EQ(secret("ZAI_API_KEY"), "from the tool");
    EXPECT_EQ(set("ZAI_API_KEY", "from the companion").status, 0);
    EXPECT_EQ(tool.run({"lookup", "service", "Vesk", "account", "ZAI_API_KEY"}).output, "from the companion");
}

TEST_F(KeyringProgram, ALockedKeyringIsToldAndPresenceStillAnswers) {
    EXPECT_EQ(set("ZAI_API_KEY", "secret").status, 0);
    keyring.lock();
    expectFailure({"secrets", "read", "ZAI_API_KEY"},
                  "Unable to read Keychain item for ZAI_API_KEY. (OSStatus -25308)");
    EXPECT_EQ(std::get<bool>(at(json({"secrets", "presence"}), "ZAI_API_KEY").value), true);
    const JsonValue secrets = at(json({"doctor", "--json"}), "secrets");
    EXPECT_THAT(textAt(secrets, "service"), HasSubstr("(locked)"));
    EXPECT_EQ(textAt(listAt(secrets, "findings").at(0), "problem"),
              "The secrets are locked and nobody can be asked to unlock them.");
}

TEST_F(KeyringProgram, TwoProcessesWriteOneAccountAndOneItemIsLeft) {
    const auto write = [&](int process) {
        ProgramRun own(companionProgram);
        own.environment = program.environment;
        int failures = 0;
        for (int round = 0; round < 10; ++round) {
            own.input = std::to_string(process) + "-" + std::to_string(round);
            const ProgramResult result = own.run({"secrets", "set", "SHARED"});
            const bool wasSecond = result.errorOutput.find("-25299") != std::string::npos;
            if (result.status != 0 && !wasSecond) ++failures;
        }
        return failures;
    };
    auto other = std::async(std::launch::async, write, 1);
    EXPECT_EQ(write(2), 0);
    EXPECT_EQ(other.get(), 0);
    EXPECT_THAT(secret("SHARED").value_or(""), ::testing::EndsWith("-9"));
    ProgramRun tool("/usr/bin/secret-tool");
    tool.environment["DBUS_SESSION_BUS_ADDRESS"] = keyring.address();
    const std::string found = tool.run({"search", "--all", "service", "Vesk"}).output;
    EXPECT_EQ(found.find("secret = "), found.rfind("secret = ")) << found;
}

TEST_F(KeyringProgram, ASilentKeyringIsGivenUpWithOneLine) {
    EXPECT_EQ(set("ZAI_API_KEY", "secret").status, 0);
    ::kill(keyring.process(), SIGSTOP);
    const auto started = std::chrono::steady_clock::now();
    expectFailure({"secrets", "read", "ZAI_API_KEY"},
                  "Unable to read Keychain item for ZAI_API_KEY. (OSStatus -25291)");
    EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(15));
    EXPECT_THAT(log(), HasSubstr("Secret Service does not answer"));
}

TEST_F(KeyringProgram, AKeyringThatWasKilledLeavesTheFileForNewSecrets) {
    EXPECT_EQ(set("ZAI_API_KEY", "secret").status, 0);
    keyring.kill();
    EXPECT_EQ(secret("ZAI_API_KEY"), std::nullopt);
    EXPECT_THAT(textAt(at(json({"doctor", "--json"}), "secrets"), "service"), HasSubstr("secrets.sqlite"));
}

} // namespace
} // namespace vesk::test
