#include "tests/support/VirtualDesktop.hpp"

#include "VeskPlatform/Linux/ChildProcess.hpp"
#include "tests/support/BackgroundPrograms.hpp"

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <poll.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace vesk::test {

namespace {

namespace fs = std::filesystem;

constexpr std::chrono::seconds patience{15};

std::string firstLine(const std::string& text) { return text.substr(0, text.find('\n')); }

/// Calls `attempt` until it gives something else than an empty text.
template <class Attempt>
    requires(!std::is_invocable_r_v<bool, Attempt>)
std::string eventually(const std::string& what, Attempt attempt) {
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (std::chrono::steady_clock::now() < deadline) {
        if (std::string result = attempt(); !result.empty()) return result;
        ::poll(nullptr, 0, 10); // X has no event for what another client is about to do
    }
    throw std::runtime_error("Waited in vain for " + what);
}

std::string outputOf(const std::vector<std::string>& arguments) {
    const auto result = runProgram(arguments);
    return result && result->status == 0 ? firstLine(result->output) : "";
}

/// What a server has of a display number while it runs, and what a killed one leaves.
std::array<std::string, 2> tracesOf(const std::string& display) {
    const std::string number = display.substr(1);
    return {"/tmp/.X" + number + "-lock", "/tmp/.X11-unix/X" + number};
}

bool isTaken(const std::string& display) {
    const auto traces = tracesOf(display);
    return std::any_of(traces.begin(), traces.end(), [](const std::string& path) { return fs::exists(path); });
}

/// A number of our own: servers that look for a free one remove each other's sockets when they start at once. Nor one
/// with a lock of a killed server, which names a process: where that number has come round, it may be the new server's.
std::string displayOfOurOwn() {
    constexpr int numbers = 29'000;
    int number = 100 + ::getpid() % numbers;
    if (isTaken(":" + std::to_string(number))) number += numbers;
    return ":" + std::to_string(number);
}

} // namespace

void eventually(const std::string& what, const std::function<bool()>& condition) {
    eventually(what, [&condition] { return std::string(condition() ? "yes" : ""); });
}

VirtualDesktop::VirtualDesktop(const VirtualScreen& screen) {
    const std::string server = requiredProgram("Xvfb", "xvfb");
    const std::string xdotool = requiredProgram("xdotool", "xdotool");
    display_ = displayOfOurOwn();
    server_ = programs_.emplace_back(
        startInBackground({server, display_, "-screen", "0", screen.format, "-nolisten", "tcp", "-noreset"}));
    setVariable("DISPLAY", display_);
    setVariable("HOME", folder_.path());
    setVariable("XDG_RUNTIME_DIR", folder_.path());
    setVariable("NO_AT_BRIDGE", "1");
    setVariable("GSETTINGS_BACKEND", "memory");
    eventually("the X server", [&] { return outputOf({xdotool, "getdisplaygeometry"}); });
    if (screen.hasWindowManager) {
        // Windows that come before it has begun get no focus.
        const std::string ready = folder_ / "managed";
        programs_.push_back(startInBackground({requiredProgram("openbox", "openbox"), "--startup", "touch " + ready}));
        eventually("the window manager", [&] { return fs::exists(ready); });
    }
}

VirtualDesktop::~VirtualDesktop() {
    for (auto program = programs_.rbegin(); program != programs_.rend(); ++program) {
        ::kill(*program, SIGCONT);
        // Only the server has something to clear away; a busy window manager would take its time.
        ::kill(*program, *program == server_ ? SIGTERM : SIGKILL);
        ::waitpid(*program, nullptr, 0);
    }
    std::error_code ignored;
    for (const std::string& trace : tracesOf(display_)) fs::remove(trace, ignored); // of a server that was killed
    for (const std::string& name : variables_) ::unsetenv(name.c_str());
}

void VirtualDesktop::setVariable(const std::string& name, const std::string& value) {
    ::setenv(name.c_str(), value.c_str(), 1);
    variables_.push_back(name);
}

std::string VirtualDesktop::run(const std::string& program, const std::vector<std::string>& arguments) const {
    std::vector<std::string> command{requiredProgram(program, "of that program")};
    command.insert(command.end(), arguments.begin(), arguments.end());
    const auto result = runProgram(command);
    if (!result || result->status != 0)
        throw std::runtime_error(program + " failed: " + (result ? result->errors : "not started"));
    return firstLine(result->output);
}

pid_t VirtualDesktop::launch(const std::string& program, const std::vector<std::string>& arguments) {
    std::vector<std::string> command{requiredProgram(program, "of that program")};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return programs_.emplace_back(startInBackground(command));
}

void VirtualDesktop::kill(pid_t program) {
    std::erase(programs_, program);
    ::kill(program, SIGKILL);
    ::waitpid(program, nullptr, 0);
}

pid_t VirtualDesktop::focusedProgram() const {
    const std::string told = outputOf({"/usr/bin/xdotool", "getwindowfocus", "getwindowpid"});
    return told.empty() ? 0 : static_cast<pid_t>(std::stol(told));
}

void VirtualDesktop::end() { kill(server_); }

void VirtualDesktop::press(const std::string& title, const std::vector<std::string>& keys) {
    const std::string xdotool = "/usr/bin/xdotool";
    std::string window;
    // Identifiers of windows are used again at once; the program behind one tells a new window from the last.
    lastProgram_ = eventually("the window " + title, [&] {
        window = outputOf({xdotool, "search", "--onlyvisible", "--name", "^" + title + "$"});
        const std::string program = window.empty() ? "" : outputOf({xdotool, "getwindowpid", window});
        return program == lastProgram_ ? "" : program;
    });
    eventually("the focus of " + title, [&] {
        runProgram({xdotool, "windowactivate", window});
        return outputOf({xdotool, "getwindowfocus"}) == window ? "focused" : "";
    });
    std::vector<std::string> arguments{xdotool, "key", "--clearmodifiers"};
    arguments.insert(arguments.end(), keys.begin(), keys.end());
    runProgram(arguments);
}

} // namespace vesk::test
