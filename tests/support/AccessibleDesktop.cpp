#include "tests/support/AccessibleDesktop.hpp"

#include "VeskPlatform/Linux/ChildProcess.hpp"
#include "tests/support/BackgroundPrograms.hpp"

#include <filesystem>
#include <fstream>
#include <pwd.h>
#include <stdexcept>
#include <unistd.h>

namespace vesk::test {

namespace {

constexpr const char* launcherService = "/usr/share/dbus-1/services/org.a11y.Bus.service";

/// A bus that starts nothing but the accessibility bus, for the programs' user and that of the tests.
std::string configuration(const std::string& folder) {
    return R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
  "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:path=)"
           + folder + R"(/bus</listen>
  <auth>EXTERNAL</auth>
  <servicedir>)"
           + folder + R"(/services</servicedir>
  <policy context="default">
    <allow user="*"/><allow send_destination="*"/><allow receive_sender="*"/><allow own="*"/>
  </policy>
</busconfig>
)";
}

void required(bool isThere, const std::string& what, const std::string& package) {
    if (!isThere) throw std::runtime_error(what + " is not installed: apt install " + package);
}

/// Gives a file or folder to the user of the programs.
void handOver(const std::string& path) {
    if (::geteuid() != 0) return;
    const passwd* user = ::getpwnam("nobody");
    if (user == nullptr || ::chown(path.c_str(), user->pw_uid, user->pw_gid) != 0)
        throw std::runtime_error(path + " cannot be given to the user nobody");
}

} // namespace

AccessibleDesktop::AccessibleDesktop() {
    required(std::filesystem::exists(launcherService), "The accessibility bus", "at-spi2-core");
    handOver(home());
    desktop_.setVariable("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + home() + "/bus");
    desktop_.setVariable("NO_AT_BRIDGE", "0");
    desktop_.setVariable("ACCESSIBILITY_ENABLED", "1");
    desktop_.setVariable("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1");
    std::filesystem::create_directories(home() + "/services");
    std::filesystem::copy(launcherService, home() + "/services/org.a11y.Bus.service");
    const std::string path = write("bus.conf", configuration(home()));
    launch("dbus-daemon", "dbus-daemon", {"--config-file=" + path, "--nofork"});
    eventually("the session bus", [this] { return isListening(home() + "/bus"); });
}

pid_t AccessibleDesktop::launch(const std::string& program, const std::string& package,
                                std::vector<std::string> arguments) {
    required(installedProgram(program).has_value(), program, package);
    if (::geteuid() != 0) return desktop_.launch(program, arguments);
    std::vector<std::string> words{"--reuid=nobody", "--regid=nogroup", "--clear-groups", program};
    words.insert(words.end(), arguments.begin(), arguments.end());
    return desktop_.launch("setpriv", words);
}

std::string AccessibleDesktop::write(const std::string& name, const std::string& bytes) {
    std::string path = home() + "/" + name;
    std::ofstream(path, std::ios::binary) << bytes;
    handOver(path);
    return path;
}

void AccessibleDesktop::press(const std::vector<std::string>& keys) {
    std::vector<std::string> arguments{"key", "--clearmodifiers"};
    arguments.insert(arguments.end(), keys.begin(), keys.end());
    desktop_.run("xdotool", arguments);
}

} // namespace vesk::test
