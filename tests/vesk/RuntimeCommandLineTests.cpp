#include "vesk/CommandLine.hpp"

#include <gtest/gtest.h>
#include <limits>

namespace vesk {
namespace {

RuntimeCommand parsed(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "runtime");
    return std::get<RuntimeCommand>(parseCommandLine(std::move(arguments)));
}

std::string wrong(std::vector<std::string> arguments) {
    try {
        parseCommandLine(std::move(arguments));
    } catch (const UsageError& error) {
        return error.what();
    }
    return "nothing";
}

TEST(RuntimeCommandLine, EachVerbIsTheRuntimesOwnWord) {
    using enum RuntimeVerb;
    const std::string bootstrap = "bootstrap", settings = "settings";
    const std::pair<RuntimeVerb, std::vector<std::string>> cases[] = {
        {locate, {"locate"}},
        {status, {bootstrap, "status"}},
        {start, {bootstrap, "start"}},
        {stop, {bootstrap, "stop"}},
        {restart, {bootstrap, "restart"}},
        {activate, {bootstrap, "activate", "--stopped"}},
        {recordUpdateActivation, {bootstrap, "record-update-activation", "--stdin"}},
        {doctor, {bootstrap, "doctor"}},
        {connectors, {bootstrap, "connectors"}},
        {connectorDetail, {bootstrap, "connector-detail", "mail"}},
        {connectorInstall, {bootstrap, "connector-install", "mail"}},
        {connectorConnect, {bootstrap, "connector-connect", "mail", "--stdin"}},
        {connectorDisconnect, {bootstrap, "connector-disconnect", "mail"}},
        {telegramTokenValidate, {bootstrap, "telegram-token-validate", "--stdin"}},
        {telegramBindingStatus, {bootstrap, "telegram-binding-status"}},
        {memories, {bootstrap, "memories"}},
        {memoryCreate, {bootstrap, "memory-create", "--stdin"}},
        {memoryUpdate, {bootstrap, "memory-update", "7", "--stdin"}},
        {init, {bootstrap, "init", "--stdin"}},
        {installCoreTools, {bootstrap, "install-core-tools"}},
        {prepareRuntime, {bootstrap, "prepare-runtime"}},
        {completeOnboarding, {bootstrap, "complete-onboarding"}},
        {installLaunchAgent, {bootstrap, "install-launch-agent"}},
        {uninstallLaunchAgent, {bootstrap, "uninstall-launch-agent"}},
        {print, {settings, "print"}},
        {merge, {settings, "merge", "--stdin"}},
        {setSecrets, {settings, "set-secrets", "--stdin"}},
        {deleteSecret, {settings, "delete-secret", "OPENAI_API_KEY"}},
    };
    EXPECT_EQ(std::size(cases), rawValueTable<RuntimeVerb>.size());
    for (const auto& [verb, arguments] : cases) EXPECT_EQ(parsed(arguments).verb, verb) << rawValue(verb);
}

TEST(RuntimeCommandLine, CarriesItsArguments) {
    EXPECT_EQ(parsed({"bootstrap", "connector-detail", "mail"}).subject, "mail");
    EXPECT_EQ(parsed({"settings", "delete-secret", "A"}).subject, "A");
    EXPECT_EQ(parsed({"bootstrap", "memory-update", "-1", "--stdin"}).memoryId, -1);
    EXPECT_EQ(parsed({"bootstrap", "connector-connect", "m", "--email", "d@x.example"}).email, "d@x.example");
    EXPECT_EQ(parsed({"bootstrap", "connector-disconnect", "m", "--email", " "}).email, " ");
    EXPECT_EQ(parsed({"bootstrap", "connector-disconnect", "m"}).email, std::nullopt);
    EXPECT_TRUE(parsed({"bootstrap", "connector-install", "m", "--force"}).force);
    EXPECT_FALSE(parsed({"bootstrap", "connector-install", "m"}).force);
    EXPECT_TRUE(parsed({"bootstrap", "activate", "--running"}).running);
    EXPECT_FALSE(parsed({"bootstrap", "activate", "--stopped"}).running);
}

TEST(RuntimeCommandLine, AMemoryIsNamedByAWholeDecimalNumber) {
    const auto update = [](const std::string& number) {
        return std::vector<std::string>{"bootstrap", "memory-update", number, "--stdin"};
    };
    EXPECT_EQ(parsed(update("9223372036854775807")).memoryId, std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(parsed(update("010")).memoryId, 10);
    for (const char* number :
         {"", " 7", "7 ", "+7", "0x10", "1.0", "1e3", "9223372036854775808", "-99999999999999999999", "seven"}) {
        std::vector<std::string> arguments = update(number);
        arguments.insert(arguments.begin(), "runtime");
        EXPECT_EQ(wrong(arguments), std::string("Could not convert: id = ") + number);
    }
}

TEST(RuntimeCommandLine, RefusesWhatMeansNothing) {
    const std::pair<std::vector<std::string>, const char*> cases[] = {
        {{"runtime"}, "A subcommand is required"},
        {{"runtime", "bootstrap"}, "A subcommand is required"},
        {{"runtime", "settings", "status"}, "A subcommand is required"},
        {{"runtime", "bootstrap", "activate"}, "One of --running and --stopped is needed."},
        {{"runtime", "bootstrap", "activate", "--running", "--stopped"}, "One of --running and --stopped is needed."},
        {{"runtime", "bootstrap", "connector-connect", "m"}, "One of --email and --stdin is needed."},
        {{"runtime", "bootstrap", "connector-connect", "m", "--stdin", "--email", "e"},
         "One of --email and --stdin is needed."},
        {{"runtime", "bootstrap", "memory-create"}, "--stdin is required"},
        {{"runtime", "bootstrap", "memory-create", "tea", "--stdin"}, "The following argument was not expected: tea"},
        {{"runtime", "bootstrap", "connector-install"}, "id is required"},
        {{"runtime", "settings", "delete-secret"}, "account is required"},
        {{"broker", "request"}, "name is required"},
        {{"broker", "request", "Calendar"}, "Unknown capability: Calendar"},
    };
    for (const auto& [arguments, expected] : cases) EXPECT_EQ(wrong(arguments), expected);
}

TEST(RuntimeCommandLine, AsksTheBroker) {
    EXPECT_EQ(std::get<BrokerCommand>(parseCommandLine({"broker", "status"})).requested, std::nullopt);
    EXPECT_EQ(std::get<BrokerCommand>(parseCommandLine({"broker", "request", "mail"})).requested, CapabilityKind::mail);
}

} // namespace
} // namespace vesk
