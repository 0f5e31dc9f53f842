#include "VeskPlatform/Linux/Secrets/SecretServiceKeychain.hpp"
#include "tests/support/BusService.hpp"
#include "tests/support/PrivateKeyring.hpp"
#include "tests/support/ProgramRun.hpp"

#include <csignal>
#include <future>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vesk::test {
namespace {

using namespace std::chrono_literals;
using ::testing::HasSubstr;
using ::testing::Not;

class SecretServiceTest : public ::testing::Test {
protected:
    std::vector<std::string> logged;
    SecretServiceOptions options{.canPrompt = [] { return false; },
                                 .log = [this](const std::string& line) { logged.push_back(line); },
                                 .patience = 10s,
                                 .promptPatience = 300ms};
};

class KeyringTests : public SecretServiceTest {
protected:
    PrivateKeyring keyring;
    SecretServiceKeychain keychain{options};

    ProgramResult secretTool(const std::vector<std::string>& arguments, const std::string& input = "") const {
        ProgramRun run("/usr/bin/secret-tool");
        run.environment["DBUS_SESSION_BUS_ADDRESS"] = keyring.address();
        run.input = input;
        return run.run(arguments);
    }
};

TEST_F(KeyringTests, SecretToolReadsWhatIsStored) {
    ASSERT_EQ(keychain.add("Vesk", "A", "schlüssel"), KeychainStatus::success);
    const auto looked = secretTool({"lookup", "service", "Vesk", "account", "A"});
    EXPECT_EQ(looked.status, 0) << looked;
    EXPECT_EQ(looked.output, "schlüssel") << looked;
    ASSERT_EQ(keychain.update("Vesk", "A", "neu"), KeychainStatus::success);
    EXPECT_EQ(secretTool({"lookup", "service", "Vesk", "account", "A"}).output, "neu");
}

TEST_F(KeyringTests, WhatSecretToolStoredIsReadAndChangedAndKeepsItsLabelAndAttributes) {
    const auto stored =
        secretTool({"store", "--label=My label", "service", "Vesk", "account", "A", "more", "kept"}, "from the tool");
    ASSERT_EQ(stored.status, 0) << stored;
    EXPECT_EQ(keychain.copy("Vesk", "A").bytes, "from the tool");
    EXPECT_EQ(keychain.add("Vesk", "A", "x"), KeychainStatus::duplicateItem);
    ASSERT_EQ(keychain.update("Vesk", "A", "changed"), KeychainStatus::success);
    const auto found = secretTool({"search", "--all", "service", "Vesk"});
    EXPECT_THAT(found.output, HasSubstr("label = My label")) << found;
    EXPECT_THAT(found.output, HasSubstr("secret = changed")) << found;
    EXPECT_THAT(found.output + found.errorOutput, HasSubstr("attribute.more = kept")) << found;
    EXPECT_EQ(keychain.remove("Vesk", "A"), KeychainStatus::success);
    EXPECT_EQ(secretTool({"lookup", "service", "Vesk", "account", "A"}).status, 1);
}

TEST_F(KeyringTests, AnItemHasTheTwoAttributesAndNoOthers) {
    ASSERT_EQ(keychain.add("Vesk", "A", "x"), KeychainStatus::success);
    const auto found = secretTool({"search", "--all", "service", "Vesk"});
    const std::string all = found.output + found.errorOutput;
    EXPECT_THAT(all, HasSubstr("attribute.service = Vesk")) << found;
    EXPECT_THAT(all, HasSubstr("attribute.account = A")) << found;
    EXPECT_THAT(all, HasSubstr("label = Vesk: A")) << found;
    std::size_t attributes = 0;
    for (std::size_t at = all.find("attribute."); at != std::string::npos; at = all.find("attribute.", at + 1))
        ++attributes;
    EXPECT_EQ(attributes, 2U) << found;
}

TEST_F(KeyringTests, ALockedKeyringIsLockedAtOnceWhereNobodyCanBeAsked) {
    ASSERT_EQ(keychain.add("Vesk", "A", "planted-secret"), KeychainStatus::success);
    keyring.lock();
    EXPECT_EQ(keychain.copy("Vesk", "A").status, KeychainStatus::locked);
    EXPECT_EQ(keychain.update("Vesk", "A", "planted-new"), KeychainStatus::locked);
    EXPECT_EQ(keychain.add("Vesk", "B", "planted-new"), KeychainStatus::locked);
    EXPECT_EQ(keychain.remove("Vesk", "A"), KeychainStatus::locked);
    EXPECT_EQ(keychain.removeAll("Vesk"), KeychainStatus::locked);
    EXPECT_EQ(keychain.find("Vesk", "A"), KeychainStatus::success) << "finding opens nothing";
    EXPECT_EQ(keychain.add("Vesk", "A", "x"), KeychainStatus::duplicateItem);
    EXPECT_EQ(keychain.state().isLocked, true);
    EXPECT_FALSE(logged.empty());
    for (const std::string& line : logged) EXPECT_THAT(line, Not(HasSubstr("planted")));
}

TEST_F(KeyringTests, TheStateNamesTheProgramAndTheLock) {
    const SecretServiceState state = keychain.state();
    EXPECT_THAT(state.program, HasSubstr("gnome-keyring"));
    EXPECT_EQ(state.isLocked, false);
    EXPECT_EQ(state.trouble, "");
    EXPECT_EQ(keychain.presence(), SecretServicePresence::present);
    EXPECT_EQ(keychain.reach(), SecretServicePresence::present);
}

TEST_F(KeyringTests, AServiceThatWasKilledIsUnavailableAndItsSuccessorServes) {
    ASSERT_EQ(keychain.add("Vesk", "A", "x"), KeychainStatus::success);
    keyring.kill();
    EXPECT_EQ(keychain.copy("Vesk", "A").status, KeychainStatus::unavailable);
    EXPECT_EQ(keychain.update("Vesk", "A", "y"), KeychainStatus::unavailable);
    EXPECT_EQ(keychain.presence(), SecretServicePresence::absent);
    keyring.start();
    EXPECT_EQ(keychain.copy("Vesk", "A").bytes, "x");
    EXPECT_EQ(keychain.update("Vesk", "A", "y"), KeychainStatus::success);
}

TEST_F(KeyringTests, AServiceThatIsKilledInTheMiddleOfACallIsUnavailable) {
    ASSERT_EQ(keychain.add("Vesk", "A", "x"), KeychainStatus::success);
    ::kill(keyring.process(), SIGSTOP);
    auto status = std::async(std::launch::async, [&] { return keychain.copy("Vesk", "A").status; });
    keyring.kill();
    EXPECT_EQ(status.get(), KeychainStatus::unavailable);
}

TEST_F(KeyringTests, AServiceThatStopsAnsweringIsGivenUpAtItsLimit) {
    ASSERT_EQ(keychain.add("Vesk", "A", "x"), KeychainStatus::success);
    ::kill(keyring.process(), SIGSTOP);
    options.patience = 200ms;
    SecretServiceKeychain hasty(options);
    EXPECT_EQ(hasty.copy("Vesk", "A").status, KeychainStatus::unavailable);
    EXPECT_EQ(hasty.update("Vesk", "A", "y"), KeychainStatus::unavailable);
    ::kill(keyring.process(), SIGCONT);
}

TEST_F(KeyringTests, NamesThatNoStoreTakesAreRefused) {
    for (const std::string& name : {std::string("\xff"), std::string("a\0b", 3)}) {
        EXPECT_EQ(keychain.add("Vesk", name, "x"), KeychainStatus::parameter);
        EXPECT_EQ(keychain.copy(name, "A").status, KeychainStatus::parameter);
        EXPECT_EQ(keychain.removeAll(name), KeychainStatus::parameter);
    }
}

/// Has the name and answers nothing, or answers searches with one locked item whose question ends as the test says.
class FakeSecretService : public BusService {
public:
    ~FakeSecretService() override { stop(); }

    enum class Question { dismissed, dismissedWithText, neverAnswered };
    bool isSilent = false;
    Question question = Question::dismissed;

protected:
    int answer(sd_bus_message& call) override {
        if (isSilent) return 1;
        const char* service = "org.freedesktop.Secret.Service";
        if (is(call, service, "SearchItems", "a{ss}"))
            return reply(call, [](sd_bus_message& message) { sd_bus_message_append(&message, "aoao", 0, 1, item); });
        if (is(call, service, "Unlock", "ao"))
            return reply(call, [](sd_bus_message& message) { sd_bus_message_append(&message, "aoo", 0, prompt); });
        if (is(call, "org.freedesktop.Secret.Prompt", "Prompt", "s")) {
            const int result = reply(call);
            if (question != Question::neverAnswered) complete(call);
            return result;
        }
        if (is(call, "org.freedesktop.Secret.Prompt", "Dismiss")) {
            const int result = reply(call);
            complete(call);
            return result;
        }
        if (is(call, "org.freedesktop.DBus.Properties", "GetAll", "s"))
            return reply(call, [](sd_bus_message& message) { sd_bus_message_append(&message, "a{sv}", 0); });
        return 0;
    }

private:
    static constexpr const char* item = "/org/freedesktop/secrets/collection/login/1";
    static constexpr const char* prompt = "/org/freedesktop/secrets/prompt/1";
    /// Services disagree on what a dismissed question ends with.
    void complete(sd_bus_message& call) const {
        if (question == Question::dismissedWithText) {
            sd_bus_emit_signal(sd_bus_message_get_bus(&call), prompt, "org.freedesktop.Secret.Prompt", "Completed",
                               "bv", 1, "s", "");
            return;
        }
        sd_bus_emit_signal(sd_bus_message_get_bus(&call), prompt, "org.freedesktop.Secret.Prompt", "Completed", "bv", 1,
                           "ao", 0);
    }
};

class FakeServiceTests : public SecretServiceTest {
protected:
    SessionBus session;
    FakeSecretService service;

    void serve() { service.serve(session.bus().address(), "org.freedesktop.secrets"); }
};

TEST_F(FakeServiceTests, AServiceThatNeverAnswersIsUnavailable) {
    service.isSilent = true;
    serve();
    EXPECT_EQ(SecretServiceKeychain(options).presence(), SecretServicePresence::present);
    options.patience = 200ms;
    SecretServiceKeychain keychain(options);
    EXPECT_EQ(keychain.copy("Vesk", "A").status, KeychainStatus::unavailable);
    EXPECT_EQ(keychain.add("Vesk", "A", "planted-secret"), KeychainStatus::unavailable);
    EXPECT_EQ(keychain.find("Vesk", "A"), KeychainStatus::unavailable);
    EXPECT_EQ(keychain.removeAll("Vesk"), KeychainStatus::unavailable);
    EXPECT_NE(keychain.state().trouble, "");
    for (const std::string& line : logged) EXPECT_THAT(line, Not(HasSubstr("planted")));
}

TEST_F(FakeServiceTests, AQuestionThatIsDismissedIsADenial) {
    serve();
    options.canPrompt = [] { return true; };
    SecretServiceKeychain keychain(options);
    for (const auto question :
         {FakeSecretService::Question::dismissed, FakeSecretService::Question::dismissedWithText}) {
        service.question = question;
        EXPECT_EQ(keychain.copy("Vesk", "A").status, KeychainStatus::denied) << ::testing::PrintToString(logged);
        EXPECT_EQ(keychain.remove("Vesk", "A"), KeychainStatus::denied) << ::testing::PrintToString(logged);
    }
}

TEST_F(FakeServiceTests, AQuestionThatNobodyAnswersLeavesItLocked) {
    service.question = FakeSecretService::Question::neverAnswered;
    serve();
    options.canPrompt = [] { return true; };
    SecretServiceKeychain keychain(options);
    EXPECT_EQ(keychain.copy("Vesk", "A").status, KeychainStatus::locked);
}

TEST_F(FakeServiceTests, NobodyIsAskedWhereNothingCanShowAQuestion) {
    serve();
    SecretServiceKeychain keychain(options);
    EXPECT_EQ(keychain.copy("Vesk", "A").status, KeychainStatus::locked);
}

TEST_F(FakeServiceTests, ABusWithoutTheServiceHasNone) {
    SecretServiceKeychain keychain(options);
    EXPECT_EQ(keychain.presence(), SecretServicePresence::absent);
    EXPECT_EQ(keychain.reach(), SecretServicePresence::absent);
    EXPECT_EQ(keychain.state().program, "");
}

TEST_F(FakeServiceTests, AServiceThatWouldBeStartedIsThereAndIsNotStarted) {
    session.bus().addActivatable("org.freedesktop.secrets", "/bin/false");
    SecretServiceKeychain keychain(options);
    EXPECT_EQ(keychain.presence(), SecretServicePresence::present);
    EXPECT_EQ(keychain.state().program, "");
    EXPECT_EQ(keychain.state().trouble, "");
    EXPECT_EQ(keychain.reach(), SecretServicePresence::present);
    EXPECT_EQ(keychain.copy("Vesk", "A").status, KeychainStatus::unavailable);
}

TEST_F(SecretServiceTest, NoBusHasNoService) {
    ::setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere", 1);
    SecretServiceKeychain keychain(options);
    EXPECT_EQ(keychain.presence(), SecretServicePresence::absent);
    EXPECT_EQ(keychain.reach(), SecretServicePresence::absent);
    EXPECT_EQ(keychain.copy("Vesk", "A").status, KeychainStatus::unavailable);
}

} // namespace
} // namespace vesk::test
