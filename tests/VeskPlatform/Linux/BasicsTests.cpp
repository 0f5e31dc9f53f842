#include "VeskPlatform/Linux/CompanionSettingsOpener.hpp"
#include "VeskPlatform/Linux/LinuxPlatform.hpp"
#include "VeskPlatform/Linux/MainBundle.hpp"
#include "VeskPlatform/Linux/ProcessEnvironment.hpp"
#include "VeskPlatform/Linux/UserFolders.hpp"
#include "VeskPlatform/Portable/SystemClock.hpp"
#include "tests/fakes/FakeBasics.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vesk::test {
namespace {

TEST(MainBundleTests, TheRunningExecutableIsThisTest) {
    EXPECT_EQ(runningExecutable(), VESK_BINARY_DIR "/bin/VeskPlatformTests");
}

TEST(ProcessEnvironmentTests, TellsEmptyFromMissing) {
    ::setenv("VESK_TEST_EMPTY", "", 1);
    ProcessEnvironment environment;
    EXPECT_EQ(environment.value("VESK_TEST_EMPTY"), "");
    EXPECT_EQ(environment.value("VESK_TEST_MISSING"), std::nullopt);
}

TEST(ProcessEnvironmentTests, TheHomeIsAnAbsoluteFolder) {
    const char* before = std::getenv("HOME");
    const std::string saved = before == nullptr ? "" : before;
    ProcessEnvironment environment;
    ::setenv("HOME", "/home/dana//", 1);
    EXPECT_EQ(environment.homeDirectory(), "/home/dana");
    for (const char* unusable : {"", "relative"}) {
        ::setenv("HOME", unusable, 1);
        EXPECT_TRUE(environment.homeDirectory().starts_with('/')) << "the user database tells";
    }
    ::setenv("HOME", saved.c_str(), 1);
}

TEST(ProcessEnvironmentTests, TheFirstArgumentIsThisProgram) {
    EXPECT_NE(ProcessEnvironment().argumentZero().value_or("").find("VeskPlatformTests"), std::string::npos);
}

TEST(SystemClockTests, TellsTheSystemsTime) {
    const auto before = std::chrono::system_clock::now() - std::chrono::milliseconds(1);
    const Instant now = SystemClock().now();
    EXPECT_LE(before, now);
    EXPECT_LE(now, std::chrono::system_clock::now());
}

TEST(UserFoldersTests, OwnVariableThenBaseFolderThenHome) {
    FakeEnvironment environment;
    EXPECT_EQ(stateFolder(environment), "/home/dana/.local/state/vesk");
    EXPECT_EQ(cacheFolder(environment), "/home/dana/.cache/vesk");
    EXPECT_EQ(calendarsFolder(environment), "/home/dana/.local/share/vesk/calendars");
    EXPECT_EQ(remindersFolder(environment), "/home/dana/.local/share/vesk/reminders");
    EXPECT_EQ(contactsFolder(environment), "/home/dana/.local/share/vesk/contacts");
    EXPECT_EQ(containersFolder(environment), "/home/dana/.local/share/vesk/containers");
    environment.variables = {{"XDG_STATE_HOME", "/s"}, {"XDG_CACHE_HOME", "relative"}, {"XDG_DATA_HOME", ""}};
    EXPECT_EQ(stateFolder(environment), "/s/vesk");
    EXPECT_EQ(cacheFolder(environment), "/home/dana/.cache/vesk") << "a relative base folder is ignored";
    EXPECT_EQ(calendarsFolder(environment), "/home/dana/.local/share/vesk/calendars");
    environment.variables["VESK_STATE_DIR"] = "/own";
    environment.variables["VESK_CACHE_DIR"] = "";
    EXPECT_EQ(stateFolder(environment), "/own");
    EXPECT_EQ(cacheFolder(environment), "/home/dana/.cache/vesk");
    environment = {};
    environment.home = "";
    EXPECT_EQ(stateFolder(environment), "");
}

TEST(UserFoldersTests, MailIsTheFirstThatExists) {
    TemporaryFolder home;
    FakeEnvironment environment;
    environment.home = home.path();
    EXPECT_EQ(mailFolder(environment), "");
    std::filesystem::create_directories(home / ".mail");
    EXPECT_EQ(mailFolder(environment), home / ".mail");
    std::filesystem::create_directories(home / "Maildir");
    EXPECT_EQ(mailFolder(environment), home / "Maildir");
    environment.variables["VESK_MAIL_DIR"] = "/m";
    EXPECT_EQ(mailFolder(environment), "/m");
}

/// A script in the companion's place that tells through a pipe how it was started.
struct CompanionSettingsOpenerTests : ::testing::Test {
    TemporaryFolder folder;
    void SetUp() override {
        ASSERT_EQ(::mkfifo((folder / "told").c_str(), 0600), 0);
        folder.write("vesk", "#!/bin/sh\nprintf '%s|' \"$@\" $$ $(cut -d' ' -f6 /proc/$$/stat) "
                             "$(readlink /proc/$$/fd/0 /proc/$$/fd/1 /proc/$$/fd/2) > '"
                                 + folder / "told" + "'\n");
        ::chmod((folder / "vesk").c_str(), 0700);
    }
    std::string told() {
        const int pipe = ::open((folder / "told").c_str(), O_RDONLY | O_CLOEXEC);
        std::string text;
        char block[512];
        for (ssize_t count; (count = ::read(pipe, block, sizeof block)) > 0;)
            text.append(block, static_cast<std::size_t>(count));
        ::close(pipe);
        return text;
    }
};

TEST_F(CompanionSettingsOpenerTests, StartsTheConsentPageDetached) {
    CompanionSettingsOpener opener(folder / "VeskCapabilityBroker");
    EXPECT_TRUE(opener.launchOpener("x-settings:pane one")); // returns although the script still waits for a reader
    const std::string text = told();
    EXPECT_TRUE(text.starts_with("consent|page|x-settings:pane one|")) << text;
    EXPECT_TRUE(text.ends_with("|/dev/null|/dev/null|/dev/null|") || text.ends_with("|/dev/null|/dev/null|")) << text;
    EXPECT_EQ(text.find("|" + std::to_string(::getsid(0)) + "|"), std::string::npos) << "a session of its own";
    EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1) << "nothing is left to reap";
}

TEST_F(CompanionSettingsOpenerTests, AMissingCompanionCannotBeStarted) {
    std::filesystem::remove(folder / "vesk");
    EXPECT_FALSE(CompanionSettingsOpener(folder / "VeskCapabilityBroker").launchOpener("x-settings:pane"));
}

TEST(LinuxPlatformTests, AccessorsKeepWhatTheyHaveBuilt) {
    LinuxPlatform platform({.describeCapability = [](const std::string& id) { return std::pair(id, id); },
                            .log = [](const std::string&) {}});
    EXPECT_EQ(&platform.consent(), &platform.consent());
    EXPECT_EQ(&platform.logQueue(), &platform.logQueue());
    EXPECT_EQ(platform.mainBundle().path, VESK_BINARY_DIR "/bin");
    EXPECT_EQ(platform.mainBundle().resourcesPath, std::nullopt);
}

} // namespace
} // namespace vesk::test
