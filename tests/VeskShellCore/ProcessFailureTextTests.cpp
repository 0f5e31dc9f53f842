#include "VeskShellCore/ProcessFailureText.hpp"

#include <gtest/gtest.h>

namespace vesk {
namespace {

constexpr const char* stale = "Your local packaged runtime is stale. Relaunch the shell through `pnpm shell:run` so it "
                              "rebuilds the packaged runtime first.";

TEST(ProcessFailureText, TheFatalErrorSpeaksForTheProgram) {
    const std::pair<const char*, const char*> cases[] = {
        {"[daemon] fatal error Error: The disk is full. \n    at run (x.js:1)", "The disk is full."},
        {"starting\nFATAL ERROR: none", "FATAL ERROR: none"},
        {" fatal error without more ", "fatal error without more"},
        {"fatal error error: lower case", "fatal error error: lower case"},
        {"fatal error Error: one Error: two", "one Error: two"},
        {"fatal error Error: first\nfatal error Error: second", "first"},
        {"fatal error Error: Unknown command: frobnicate", stale},
        {"fatal error Unknown command: frobnicate", "fatal error Unknown command: frobnicate"},
    };
    for (const auto& [text, summary] : cases) EXPECT_EQ(summarizeProcessFailure(text), summary) << text;
}

TEST(ProcessFailureText, ElseTheFirstLineThatIsNoStackFrame) {
    EXPECT_EQ(summarizeProcessFailure("\n  at a (x:1)\n\n  something broke  \nmore"), "something broke");
    EXPECT_EQ(summarizeProcessFailure("attention"), "attention");
}

TEST(ProcessFailureText, OnlyStackFramesComeBackWhole) {
    EXPECT_EQ(summarizeProcessFailure("  at a (x:1)\n  at b (x:2)\n"), "at a (x:1)\n  at b (x:2)");
}

TEST(ProcessFailureText, NothingComesToNothing) {
    EXPECT_EQ(summarizeProcessFailure(""), "");
    EXPECT_EQ(summarizeProcessFailure(" \n\t\n"), "");
}

TEST(ProductSurfaceText, BlankTextGivesTheFallback) {
    EXPECT_EQ(VeskProductSurfaceText::sanitizeUserFacing(std::nullopt, "F"), "F");
    EXPECT_EQ(VeskProductSurfaceText::sanitizeUserFacing("   \n", "F"), "F");
    EXPECT_EQ(VeskProductSurfaceText::sanitizeUserFacing(" Try again. ", "F"), "Try again.");
}

TEST(ProductSurfaceText, WordsOfTheInnerLifeAreLeaks) {
    for (const char* text : {"api key",
                             "auth base url",
                             "backend",
                             "callback",
                             "capability broker",
                             "cli response",
                             "credentials path",
                             "daemon",
                             "grant token",
                             "inference provider",
                             "keychain",
                             "launchagent",
                             "launchctl",
                             "locked provider",
                             "native control bridge",
                             "oauth",
                             "openai",
                             "openrouter",
                             "osstatus",
                             "packaged runtime",
                             "plist",
                             "pnpm x",
                             "process env",
                             "provider_api_key_missing",
                             "runtime manifest",
                             "secret",
                             "status check failed",
                             "telnyx",
                             "The KeyChain is locked",
                             "SECRETS"}) {
        EXPECT_TRUE(VeskProductSurfaceText::containsInternalLeak(text)) << text;
        EXPECT_EQ(VeskProductSurfaceText::sanitizeUserFacing(text, "F"), "F") << text;
    }
}

TEST(ProductSurfaceText, WordsOfFiveCapitalsAreLeaks) {
    for (const char* text : {"ENOENT happened", "code E_1234", "see VESK_STATE_DIR", "A1234"})
        EXPECT_TRUE(VeskProductSurfaceText::containsInternalLeak(text)) << text;
    for (const char* text : {"HTTP failed", "Hello There", "pnpm", "1ABCD", "ABCd", "a-B-C"})
        EXPECT_FALSE(VeskProductSurfaceText::containsInternalLeak(text)) << text;
}

} // namespace
} // namespace vesk
