#include "VeskShellCore/ShellDebugLogger.hpp"
#include "tests/fakes/FakePlatform.hpp"

#include <gtest/gtest.h>

namespace vesk {
namespace {

using ShellDebugLogger::sanitize;

struct SanitizeCase {
    std::string name, text, expected;
};

const SanitizeCase sanitizeCases[] = {
    {"empty", "", ""},
    {"nothing private", "broker command=start id=7", "broker command=start id=7"},
    {"quoted value goes whole", R"(text="hello world" id=7)", "text=[REDACTED] id=7"},
    {"bare value ends at the first blank", "text=hello world", "text=[REDACTED] world"},
    {"key inside a word stays", "context=abc", "context=abc"},
    {"key behind a full stop", "my.text=abc", "my.text=[REDACTED]"},
    {"key behind an underscore stays", "my_text=abc", "my_text=abc"},
    {"key behind a letter outside ASCII stays", "\u00E9text=abc", "\u00E9text=abc"},
    {"key in another case stays", "TEXT=abc", "TEXT=abc"},
    {"every key", "emailHint=a url=b stdoutPreview=c stderrPreview=d text=e input=f output=g prompt=h response=i",
     "emailHint=[REDACTED] url=[REDACTED] stdoutPreview=[REDACTED] stderrPreview=[REDACTED] text=[REDACTED] "
     "input=[REDACTED] output=[REDACTED] prompt=[REDACTED] response=[REDACTED]"},
    {"same key twice", "text=a text=b", "text=[REDACTED] text=[REDACTED]"},
    {"empty quoted value", "text=\"\" x", "text=[REDACTED] x"},
    {"unclosed quote is one run", "text=\"hello world", "text=[REDACTED] world"},
    {"what follows a quote without a blank stays", "text=\"a\"b c", "text=[REDACTED]b c"},
    {"quoted value over lines", "text=\"a\nb\" c", "text=[REDACTED] c"},
    {"no value", "text= abc", "text= abc"},
    {"value ends at any white space", "text=a\u00A0b text=c\u2003d text=e\tf",
     "text=[REDACTED]\u00A0b text=[REDACTED]\u2003d text=[REDACTED]\tf"},
    {"key as the value of another", "text=input=a b", "text=[REDACTED] b"},
    {"url hides its path", "url=/Users/dana/x y", "url=[REDACTED] y"},
    {"quoted address", R"(text="dana@example.com wrote" ok)", "text=[REDACTED] ok"},
    {"address in a sentence", "ask Dana.Smith+x@Mail.Example.COM today", "ask [EMAIL] today"},
    {"address without a top level", "dana@example stays", "dana@example stays"},
    {"top level of one letter", "dana@example.c stays", "dana@example.c stays"},
    {"top level stops before digits", "dana@example.com1", "[EMAIL]1"},
    {"two addresses end to end", "a@b.cc,d@e.ff", "[EMAIL],[EMAIL]"},
    {"address that begins where the last ended", "a@b.cc%x@y.de", "[EMAIL][EMAIL]"},
    {"address behind an at sign", "x@@a@b.cc", "x@@[EMAIL]"},
    {"address in brackets", "<dana@example.com>", "<[EMAIL]>"},
    {"bearer token", "Authorization: Bearer abc.DEF-_~+/=x", "Authorization: Bearer [REDACTED]"},
    {"bearer in lower case", "bearer abc.def", "Bearer [REDACTED]"},
    {"bearer over a line break", "BEARER\n  abc, next", "Bearer [REDACTED], next"},
    {"bearer inside a word", "forbearer x", "forBearer [REDACTED]"},
    {"bearer without a token", "Bearer !", "Bearer !"},
    {"path", "at /Users/dana/Library/x,y", "at [LOCAL_PATH],y"},
    {"path ends at quotes and brackets", R"('/Users/a' "/Users/b" (/Users/c) [/Users/d])",
     R"('[LOCAL_PATH]' "[LOCAL_PATH]" ([LOCAL_PATH]) [[LOCAL_PATH]])"},
    {"path outside the home folders", "/private/tmp/x", "/private/tmp/x"},
    {"path in another case", "/users/dana", "/users/dana"},
    {"the folder alone", "/Users/ x", "/Users/ x"},
    {"ill-formed text", "a\xFFz text=b", "a\uFFFDz text=[REDACTED]"},
};

TEST(ShellDebugLoggerSanitize, Table) {
    for (const SanitizeCase& c : sanitizeCases) EXPECT_EQ(sanitize(c.text), c.expected) << c.name;
}

TEST(ShellDebugLoggerSanitize, LongRunsAreSearchedOnce) {
    // From each of its characters this run would take ten thousand million steps.
    const std::string run(100'000, 'a');
    EXPECT_EQ(sanitize("x @ " + run), "x @ " + run);
    EXPECT_EQ(sanitize("x@" + run), "x@" + run);
}

TEST(ShellDebugLoggerPreview, ShowsOnlyTheLength) {
    EXPECT_EQ(ShellDebugLogger::preview("hello", 100), "[REDACTED bytes=5]");
    EXPECT_EQ(ShellDebugLogger::preview("hello", 0), "[REDACTED bytes=5]");
    EXPECT_EQ(ShellDebugLogger::preview("", 0), "(empty)");
    EXPECT_EQ(ShellDebugLogger::preview("", 7), "(empty)");
}

struct PlaceCase {
    std::optional<std::string> variable;
    std::string home;
    std::optional<std::string> expected;
};

TEST(ShellDebugLoggerPlace, VariableThenHome) {
    const PlaceCase cases[] = {
        {std::nullopt, "/home/dana", "/home/dana/Library/Application Support/Vesk/logs/shell-debug.log"},
        {"", "/home/dana", "/home/dana/Library/Application Support/Vesk/logs/shell-debug.log"},
        {"  ", "/home/dana", "/home/dana/Library/Application Support/Vesk/logs/shell-debug.log"},
        {"/tmp/x", "/home/dana", "/tmp/x/logs/shell-debug.log"},
        {" /tmp/x\n", "/home/dana", "/tmp/x/logs/shell-debug.log"},
        {"/tmp/x/", "/home/dana", "/tmp/x/logs/shell-debug.log"},
        {"/tmp/x", "", "/tmp/x/logs/shell-debug.log"},
        {std::nullopt, "/", "/Library/Application Support/Vesk/logs/shell-debug.log"},
        {std::nullopt, "", std::nullopt},
    };
    for (const PlaceCase& c : cases) {
        SCOPED_TRACE(c.variable.value_or("(unset)") + " " + c.home);
        test::FakeEnvironment environment;
        environment.home = c.home;
        if (c.variable) environment.variables["VESK_APP_SUPPORT_DIR"] = *c.variable;
        EXPECT_EQ(ShellDebugLogger::logFileURL(environment), c.expected);
    }
}

class ShellDebugLoggerLog : public testing::Test {
protected:
    ShellDebugLoggerLog() { platform.fakeEnvironment.variables["VESK_APP_SUPPORT_DIR"] = "/tmp/x"; }

    void log(const std::string& message) {
        ShellDebugLogger::log(platform, [&] { return message; });
    }

    test::FakePlatform platform;
    test::FakePrivateFiles& files = platform.fakePrivateFiles;
    const std::string file = "/tmp/x/logs/shell-debug.log";
};

TEST_F(ShellDebugLoggerLog, FirstLineMakesThePrivateFile) {
    log("broker start text=secret");
    EXPECT_TRUE(files.calls.empty()) << "the disk is left to the queue";
    platform.fakeLogQueue.drain();
    EXPECT_EQ(files.files[file], "[2026-04-26T08:30:00.000Z] broker start text=[REDACTED]\n");
    EXPECT_EQ(files.modes["/tmp/x/logs"], 0700U);
    EXPECT_EQ(files.modes[file], 0600U);
    EXPECT_EQ(files.calls,
              (std::vector<std::string>{"createDirectories /tmp/x/logs", "setPermissions /tmp/x/logs", "exists " + file,
                                        "writeAtomically " + file, "setPermissions " + file}));
}

TEST_F(ShellDebugLoggerLog, LaterLinesAreAppendedAndPermissionsSetAgain) {
    log("one");
    platform.fakeLogQueue.drain();
    files.modes[file] = 0644;
    files.modes["/tmp/x/logs"] = 0755;
    files.calls.clear();
    platform.fakeClock.time += std::chrono::milliseconds(517);
    log("two");
    platform.fakeLogQueue.drain();
    EXPECT_EQ(files.files[file], "[2026-04-26T08:30:00.000Z] one\n[2026-04-26T08:30:00.517Z] two\n");
    EXPECT_EQ(files.modes[file], 0600U);
    EXPECT_EQ(files.modes["/tmp/x/logs"], 0700U);
    EXPECT_EQ(files.calls, (std::vector<std::string>{"createDirectories /tmp/x/logs", "setPermissions /tmp/x/logs",
                                                     "exists " + file, "append " + file, "setPermissions " + file}));
}

TEST_F(ShellDebugLoggerLog, TimeAndMessageAreTakenAtTheCall) {
    std::string message = "before";
    ShellDebugLogger::log(platform, [&] { return message; });
    message = "after";
    platform.fakeClock.time += std::chrono::hours(1);
    platform.fakeLogQueue.drain();
    EXPECT_EQ(files.files[file], "[2026-04-26T08:30:00.000Z] before\n");
}

TEST_F(ShellDebugLoggerLog, PlaceIsLookedUpWhenTheLineIsWritten) {
    log("one");
    platform.fakeEnvironment.variables["VESK_APP_SUPPORT_DIR"] = "/tmp/y";
    platform.fakeLogQueue.drain();
    EXPECT_TRUE(files.files.contains("/tmp/y/logs/shell-debug.log"));
    EXPECT_FALSE(files.files.contains(file));
}

TEST_F(ShellDebugLoggerLog, MessageOfSeveralLinesStaysAsItIs) {
    log("a\nb");
    platform.fakeLogQueue.drain();
    EXPECT_EQ(files.files[file], "[2026-04-26T08:30:00.000Z] a\nb\n");
}

TEST_F(ShellDebugLoggerLog, LinesKeepTheirOrder) {
    for (const char* message : {"1", "2", "3"}) log(message);
    platform.fakeLogQueue.drain();
    EXPECT_EQ(files.files[file], "[2026-04-26T08:30:00.000Z] 1\n[2026-04-26T08:30:00.000Z] 2\n"
                                 "[2026-04-26T08:30:00.000Z] 3\n");
}

TEST_F(ShellDebugLoggerLog, AFailingStepDropsTheLineAndTheLogStaysUsable) {
    log("kept");
    platform.fakeLogQueue.drain();
    for (const char* verb : {"createDirectories", "exists", "append"}) {
        SCOPED_TRACE(verb);
        files.failing = {verb};
        EXPECT_NO_THROW(log("dropped"));
        EXPECT_NO_THROW(platform.fakeLogQueue.drain());
        EXPECT_EQ(files.files[file], "[2026-04-26T08:30:00.000Z] kept\n");
    }
    files.failing = {"setPermissions"};
    log("dropped");
    EXPECT_NO_THROW(platform.fakeLogQueue.drain());
    EXPECT_EQ(files.files[file], "[2026-04-26T08:30:00.000Z] kept\n") << "a folder that stays open gets no line";
    files.failing.clear();
    log("again");
    platform.fakeLogQueue.drain();
    EXPECT_EQ(files.files[file], "[2026-04-26T08:30:00.000Z] kept\n[2026-04-26T08:30:00.000Z] again\n");
}

TEST_F(ShellDebugLoggerLog, FailingFirstWriteIsSwallowed) {
    files.failing = {"writeAtomically"};
    log("dropped");
    EXPECT_NO_THROW(platform.fakeLogQueue.drain());
    EXPECT_FALSE(files.files.contains(file));
}

TEST_F(ShellDebugLoggerLog, LogFolderThatIsAPlainFileDropsAllLines) {
    files.files["/tmp/x/logs"] = "";
    log("dropped");
    EXPECT_NO_THROW(platform.fakeLogQueue.drain());
    EXPECT_FALSE(files.files.contains(file));
}

TEST_F(ShellDebugLoggerLog, WithoutHomeNothingIsWritten) {
    platform.fakeEnvironment.variables.clear();
    platform.fakeEnvironment.home.clear();
    log("dropped");
    platform.fakeLogQueue.drain();
    EXPECT_TRUE(files.calls.empty());
}

TEST_F(ShellDebugLoggerLog, AMessageThatCannotBeMadeFailsNoCaller) {
    EXPECT_NO_THROW(ShellDebugLogger::log(platform, []() -> std::string { throw std::bad_alloc(); }));
    EXPECT_EQ(platform.fakeLogQueue.waiting(), 0U);
}

} // namespace
} // namespace vesk
