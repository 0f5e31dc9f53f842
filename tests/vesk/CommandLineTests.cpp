#include "tests/vesk/CompanionTest.hpp"

namespace vesk::test {
namespace {

using ::testing::HasSubstr;
using CommandLineTests = CompanionTest;

TEST_F(CommandLineTests, VersionForPeopleAndAsJson) {
    EXPECT_EQ(vesk({"--version"}).output, "vesk 0.1.0 (build 0)\n");
    EXPECT_EQ(vesk({"--version", "--json"}).output, "{\n"
                                                    "  \"authOrigin\" : \"https:\\/\\/auth.vesk.example\",\n"
                                                    "  \"build\" : \"0\",\n"
                                                    "  \"releaseOrigin\" : \"https:\\/\\/updates.vesk.example\",\n"
                                                    "  \"version\" : \"0.1.0\"\n"
                                                    "}\n");
}

TEST_F(CommandLineTests, HelpIsNoFailure) {
    const std::pair<std::vector<std::string>, const char*> cases[] = {
        {{"--help"}, "Usage: vesk "},
        {{"-h"}, "Usage: vesk "},
        {{"consent", "--help"}, "Usage: vesk consent "},
        {{"consent", "grant", "--help"}, "Usage: vesk consent grant "},
        {{"doctor", "--help"}, "Usage: vesk doctor "},
    };
    for (const auto& [arguments, usage] : cases) {
        const ProgramResult result = vesk(arguments);
        EXPECT_EQ(result.status, 0) << result;
        EXPECT_THAT(result.output, HasSubstr(usage)) << result;
        EXPECT_EQ(result.errorOutput, "") << result;
    }
}

TEST_F(CommandLineTests, UsageErrorsTellUsageAndWhatWasWrong) {
    expectUsage({}, "vesk", "A command is needed.");
    expectUsage({"--json"}, "vesk", "--json needs --version or a command.");
    expectUsage({"frobnicate"}, "vesk", "The following argument was not expected: frobnicate");
    expectUsage({"consent"}, "vesk consent", "A subcommand is required");
    expectUsage({"consent", "grant"}, "vesk consent grant", "Name capabilities, or use --all.");
    expectUsage({"consent", "deny", "mail", "--all"}, "vesk consent deny", "Name capabilities, or use --all.");
    expectUsage({"consent", "page"}, "vesk consent page", "url is required");
    expectUsage({"consent", "page", "x:y"}, "vesk consent page", "Unknown settings address: x:y");
    expectUsage({"consent", "grant", "Calendar", "--yes"}, "vesk consent grant", "Unknown capability: Calendar");
    expectUsage({"consent", "deny", "a\nb"}, "vesk consent deny", "Unknown capability: a b");
    expectUsage({"consent", "deny", "a\xff"}, "vesk consent deny", "Unknown capability: a\xEF\xBF\xBD");
    EXPECT_FALSE(std::filesystem::exists(state()));
}

TEST_F(CommandLineTests, ASecretThatIsTypedAsAnArgumentIsNotRepeated) {
    const std::vector<std::string> commands[] = {
        {"secrets", "set", "OPENAI_API_KEY", "planted"},
        {"secrets", "set", "OPENAI_API_KEY", "--secret", "planted"},
        {"sign-in", "redeem", "planted"},
        {"sign-in", "redeem", "--grant=planted"},
        {"runtime", "bootstrap", "telegram-token-validate", "--stdin", "planted"},
        {"runtime", "settings", "set-secrets", "--stdin", "planted"},
        {"runtime", "bootstrap", "connector-connect", "mail", "--stdin", "planted"},
    };
    for (const auto& arguments : commands) {
        const ProgramResult result = vesk(arguments);
        EXPECT_EQ(result.status, 2) << result;
        EXPECT_THAT(result.errorOutput,
                    ::testing::EndsWith("\nvesk: An argument was not expected; a secret comes on standard input.\n"))
            << result;
        EXPECT_THAT(result.errorOutput, ::testing::Not(::testing::HasSubstr("planted"))) << result;
    }
}

TEST_F(CommandLineTests, OptionsOfOtherVerbsAreRefused) {
    EXPECT_EQ(vesk({"consent", "deny", "mail", "--yes"}).status, 2);
    EXPECT_EQ(vesk({"consent", "list", "mail"}).status, 2);
    EXPECT_EQ(vesk({"doctor", "--all"}).status, 2);
}

} // namespace
} // namespace vesk::test
