#include "VeskPlatform/Linux/Desktop/ApplicationOpener.hpp"

#include "VeskPlatform/Linux/Desktop/DesktopFiles.hpp"
#include "tests/fakes/FakeBasics.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <chrono>
#include <gmock/gmock.h>
#include <thread>

namespace vesk::test {
namespace {

using ::testing::HasSubstr;
using Folders = std::vector<std::string>;

const Folders withLauncher{"/usr/bin"};

class ApplicationOpenerTests : public ::testing::Test {
protected:
    ApplicationOpenerTests() {
        environment.variables = {
            {"XDG_DATA_HOME", folder.path()}, {"XDG_DATA_DIRS", folder.path()}, {"PATH", "/usr/bin"}};
        std::filesystem::create_directories(folder / "bin");
        std::filesystem::create_symlink("/usr/bin/env", folder / "bin/env");
    }
    int run(const std::vector<std::string>& arguments, const Folders& programs) {
        DesktopFiles files(environment);
        return ApplicationOpener(environment, files, programs).run(arguments);
    }
    std::string add(const std::string& name, const std::string& keys) {
        return folder.write("applications/" + name + ".desktop", "[Desktop Entry]\nType=Application\n" + keys);
    }
    /// What the started program wrote; it is nobody's child to wait for.
    std::string outcome(const std::string& name = "out") {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        while (!folder.exists(name) && std::chrono::steady_clock::now() < deadline) std::this_thread::yield();
        std::string text;
        while (!text.ends_with('\n') && std::chrono::steady_clock::now() < deadline) text = folder.read(name);
        return text;
    }
    std::string writer(const std::string& text) { return folder.write("writer", "#!/bin/sh\n" + text); }
    std::string program(const std::string& text) {
        const std::string path = writer(text);
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        return path;
    }

    TemporaryFolder folder;
    FakeEnvironment environment;
    Folders bare{folder / "bin"};
};

TEST_F(ApplicationOpenerTests, AProgramIsStartedByIdentifierPathOrName) {
    const std::string file =
        add("org.example", "Name=Example\nExec=" + program("echo $0 $* > " + (folder / "out")) + " a %U b\n");
    const std::string expected = folder / "writer" + " a b\n";
    for (const Folders& programs : {withLauncher, bare}) {
        for (const auto& arguments : std::vector<std::vector<std::string>>{
                 {"-b", "org.example"}, {"-a", file}, {"-a", "Example"}, {"-a", "example"}, {"-a", "org.example"}}) {
            EXPECT_EQ(run(arguments, programs), 0) << arguments[1];
            EXPECT_EQ(outcome(), expected) << arguments[1];
            std::filesystem::remove(folder / "out");
        }
    }
}

TEST_F(ApplicationOpenerTests, APathMayBeAProgram) {
    EXPECT_EQ(run({"-a", program("echo ran > " + (folder / "out"))}, bare), 0);
    EXPECT_EQ(outcome(), "ran\n");
}

TEST_F(ApplicationOpenerTests, WhatIsNotThereDoesNotStart) {
    add("broken", "Name=Broken\nExec=/nowhere/program\n");
    add("quoted", "Name=Quoted\nExec=\"open\n");
    for (const Folders& programs : {withLauncher, bare}) {
        for (const auto& arguments : std::vector<std::vector<std::string>>{{"-b", "absent"},
                                                                           {"-a", "Absent"},
                                                                           {"-a", "/nowhere/program"},
                                                                           {"-a", "/nowhere/file.desktop"},
                                                                           {"-b", "broken"},
                                                                           {"-b", "quoted"},
                                                                           {"-x", "broken"},
                                                                           {"-b"},
                                                                           {}})
            EXPECT_EQ(run(arguments, programs), 1) << (arguments.empty() ? "" : arguments.back());
    }
}

TEST_F(ApplicationOpenerTests, TheFolderOfTheFileIsTheProgramsOwn) {
    add("org.example", "Name=Example\nPath=/usr/share\nExec=" + program("pwd > " + (folder / "out")) + "\n");
    for (const Folders& programs : {withLauncher, bare}) {
        EXPECT_EQ(run({"-b", "org.example"}, programs), 0);
        EXPECT_EQ(outcome(), "/usr/share\n");
        std::filesystem::remove(folder / "out");
    }
}

TEST_F(ApplicationOpenerTests, ATerminalProgramGetsATerminal) {
    add("org.example", "Name=Example\nTerminal=true\nExec=sh -c true\n");
    try {
        run({"-b", "org.example"}, bare);
        FAIL() << "there is no terminal";
    } catch (const OpenerMissing& error) {
        EXPECT_THAT(error.description(), HasSubstr("the package xterm"));
    }
    std::filesystem::create_symlink(program("echo $* > " + (folder / "out")), folder / "bin/x-terminal-emulator");
    EXPECT_EQ(run({"-b", "org.example"}, bare), 0);
    EXPECT_EQ(outcome(), "-e /usr/bin/sh -c true\n");
}

TEST_F(ApplicationOpenerTests, AProgramThatOnlyTheBusStartsNeedsTheLauncher) {
    add("org.example", "Name=Example\nDBusActivatable=true\n");
    try {
        run({"-b", "org.example"}, bare);
        FAIL() << "there is no launcher";
    } catch (const OpenerMissing& error) {
        EXPECT_THAT(error.description(), HasSubstr("install the package libglib2.0-bin"));
    }
}

} // namespace
} // namespace vesk::test
