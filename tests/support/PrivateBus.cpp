#include "tests/support/PrivateBus.hpp"

#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

namespace vesk::test {

namespace {

std::string configuration(const std::string& folder) {
    return R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
  "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:path=)"
           + folder + R"(/socket</listen>
  <auth>EXTERNAL</auth>
  <servicedir>)"
           + folder + R"(/services</servicedir>
  <policy context="default"><allow send_destination="*"/><allow receive_sender="*"/><allow own="*"/></policy>
</busconfig>
)";
}

/// The daemon prints its address when it is ready.
std::string lineOf(int descriptor) {
    std::string line;
    for (char c = 0; ::read(descriptor, &c, 1) == 1 && c != '\n';) line += c;
    return line;
}

pid_t startDaemon(const std::string& configurationPath, int output) {
    std::string program = "/usr/bin/dbus-daemon", option = "--config-file=" + configurationPath, nofork = "--nofork",
                print = "--print-address=1";
    char* arguments[] = {program.data(), option.data(), nofork.data(), print.data(), nullptr};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t child = -1;
    const int error = ::posix_spawn(&child, arguments[0], &actions, nullptr, arguments, environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) throw std::runtime_error("dbus-daemon cannot be started: apt install dbus-daemon");
    return child;
}

} // namespace

PrivateBus::PrivateBus() {
    std::filesystem::create_directories(folder_ / "services");
    const std::string path = folder_.write("bus.conf", configuration(folder_.path()));
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    daemon_ = startDaemon(path, ends[1]);
    ::close(ends[1]);
    address_ = lineOf(ends[0]);
    ::close(ends[0]);
    if (address_.empty()) throw std::runtime_error("dbus-daemon ended early");
}

PrivateBus::~PrivateBus() {
    ::kill(daemon_, SIGTERM);
    ::waitpid(daemon_, nullptr, 0);
}

void PrivateBus::addActivatable(const std::string& service, const std::string& program) {
    folder_.write("services/" + service + ".service", "[D-BUS Service]\nName=" + service + "\nExec=" + program + "\n");
    sd_bus* bus = nullptr;
    sd_bus_new(&bus);
    sd_bus_set_address(bus, address_.c_str());
    sd_bus_set_bus_client(bus, 1);
    sd_bus_start(bus);
    const int result = sd_bus_call_method(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                                          "ReloadConfig", nullptr, nullptr, "");
    sd_bus_flush_close_unref(bus);
    if (result < 0) throw std::runtime_error("the bus did not read its services anew");
}

} // namespace vesk::test
