#include "tests/support/NestedCompositor.hpp"

#include "tests/support/BackgroundPrograms.hpp"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <poll.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace vesk::test {
namespace {

constexpr std::chrono::seconds patience{15};
constexpr const char* outerDisplay = "vesk-outer";

} // namespace

NestedCompositor::NestedCompositor(const std::string& monitors) {
    ::setenv("XDG_RUNTIME_DIR", folder_.path().c_str(), 1);
    start({"--backend=headless-backend.so", "--width=3000", "--height=3000", "--no-config"}, outerDisplay);
    ::setenv("WAYLAND_DISPLAY", outerDisplay, 1);
    const std::string configuration = folder_.write("weston.ini", "[core]\nshell=fullscreen-shell.so\n" + monitors);
    start({"--backend=wayland-backend.so", "--use-pixman", "--output-count=2", "--config=" + configuration}, display);
    ::setenv("WAYLAND_DISPLAY", display, 1);
}

NestedCompositor::NestedCompositor() {
    ::setenv("XDG_RUNTIME_DIR", folder_.path().c_str(), 1);
    // A number of our own, above those of other tests' servers.
    const std::string number = std::to_string(60000 + ::getpid() % 5000);
    startServer({requiredProgram("Xvfb", "xvfb"), ":" + number, "-screen", "0", "1000x800x24", "-nolisten", "tcp"},
                "/tmp/.X11-unix/X" + number);
    ::setenv("DISPLAY", (":" + number).c_str(), 1);
    start({"--backend=x11-backend.so", "--use-pixman", "--width=800", "--height=600", "--no-config"}, display);
    ::unsetenv("DISPLAY");
    ::setenv("WAYLAND_DISPLAY", display, 1);
}

NestedCompositor::~NestedCompositor() {
    resume();
    stop();
    ::unsetenv("WAYLAND_DISPLAY");
    ::unsetenv("XDG_RUNTIME_DIR");
}

void NestedCompositor::start(const std::vector<std::string>& arguments, const std::string& socket) {
    std::vector<std::string> all{requiredProgram("weston", "weston"), "--socket=" + socket, "--idle-time=0"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    startServer(all, folder_ / socket);
}

void NestedCompositor::startServer(const std::vector<std::string>& arguments, const std::string& socket) {
    servers_.push_back(startInBackground(arguments));
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (!isListening(socket)) {
        if (std::chrono::steady_clock::now() > deadline) {
            stop();
            throw std::runtime_error(arguments[0] + " does not start");
        }
        ::poll(nullptr, 0, 5); // it tells nobody when it is ready
    }
}

void NestedCompositor::stop() {
    for (auto server = servers_.rbegin(); server != servers_.rend(); ++server) {
        ::kill(*server, SIGTERM);
        ::waitpid(*server, nullptr, 0);
    }
    servers_.clear();
}

void NestedCompositor::pause() { ::kill(servers_.back(), SIGSTOP); }

void NestedCompositor::resume() {
    if (!servers_.empty()) ::kill(servers_.back(), SIGCONT);
}

} // namespace vesk::test
