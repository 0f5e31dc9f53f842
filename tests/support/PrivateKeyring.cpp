#include "tests/support/PrivateKeyring.hpp"

#include "tests/support/BackgroundPrograms.hpp"

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <functional>
#include <stdexcept>
#include <sys/stat.h>
#include <sys/wait.h>
#include <systemd/sd-bus.h>
#include <thread>
#include <unistd.h>

namespace vesk::test {
namespace {

using namespace std::chrono_literals;

constexpr const char* busName = "org.freedesktop.secrets";
constexpr const char* servicePath = "/org/freedesktop/secrets";
constexpr const char* serviceInterface = "org.freedesktop.Secret.Service";

class Connection {
public:
    explicit Connection(const std::string& address) {
        sd_bus_new(&bus_);
        sd_bus_set_address(bus_, address.c_str());
        sd_bus_set_bus_client(bus_, 1);
        if (sd_bus_start(bus_) < 0) throw std::runtime_error("the bus cannot be reached");
    }
    ~Connection() { sd_bus_flush_close_unref(bus_); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    bool isOwned() { return sd_bus_get_name_creds(bus_, busName, 0, nullptr) >= 0; }
    bool hasDefaultCollection() {
        sd_bus_message* reply = nullptr;
        const char* path = "/";
        if (sd_bus_call_method(bus_, busName, servicePath, serviceInterface, "ReadAlias", nullptr, &reply, "s",
                               "default")
            >= 0)
            sd_bus_message_read(reply, "o", &path);
        const bool isThere = std::string(path) != "/";
        sd_bus_message_unref(reply);
        return isThere;
    }
    bool lock() {
        return sd_bus_call_method(bus_, busName, servicePath, serviceInterface, "Lock", nullptr, nullptr, "ao", 1,
                                  "/org/freedesktop/secrets/collection/login")
               >= 0;
    }

private:
    sd_bus* bus_ = nullptr;
};

bool comesTrue(const std::function<bool()>& isSo, std::chrono::seconds patience) {
    const auto end = std::chrono::steady_clock::now() + patience;
    while (!isSo()) {
        if (std::chrono::steady_clock::now() > end) return false;
        std::this_thread::yield();
    }
    return true;
}

/// The daemon reads the password of its collection from standard input.
pid_t startDaemon(const std::string& passwordFile) {
    const std::string program = requiredProgram("gnome-keyring-daemon", "gnome-keyring");
    const pid_t child = ::fork();
    if (child != 0) return child;
    const int input = ::open(passwordFile.c_str(), O_RDONLY), null = ::open("/dev/null", O_RDWR);
    ::dup2(input, STDIN_FILENO);
    ::dup2(null, STDOUT_FILENO);
    ::dup2(null, STDERR_FILENO);
    ::execl(program.c_str(), program.c_str(), "--unlock", "--components=secrets", "--foreground", nullptr);
    ::_exit(127);
}

} // namespace

PrivateKeyring::PrivateKeyring() {
    // Before the daemon starts: what it stores goes to the home that it inherits.
    ::setenv("HOME", folder_.path().c_str(), 1);
    for (const char* variable : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"}) {
        const std::string folder = folder_ / variable;
        ::mkdir(folder.c_str(), 0700);
        ::setenv(variable, folder.c_str(), 1);
    }
    ::setenv("DBUS_SESSION_BUS_ADDRESS", bus_.address().c_str(), 1);
    ::unsetenv("DISPLAY");
    ::unsetenv("WAYLAND_DISPLAY");
    start();
}

void PrivateKeyring::start() {
    const std::string password = folder_.write("password", "opens the keyring");
    Connection connection(bus_.address());
    // On a busy machine a daemon sometimes comes up without ever calling the bus; its successor does.
    for (int tries = 5; tries > 0; --tries) {
        daemon_ = startDaemon(password);
        if (comesTrue([&] { return connection.isOwned() && connection.hasDefaultCollection(); }, 4s)) return;
        kill();
    }
    throw std::runtime_error("the keyring did not start");
}

PrivateKeyring::~PrivateKeyring() {
    kill();
    ::unsetenv("DBUS_SESSION_BUS_ADDRESS");
}

void PrivateKeyring::lock() {
    if (!Connection(bus_.address()).lock()) throw std::runtime_error("the keyring cannot be locked");
}

void PrivateKeyring::kill() {
    if (daemon_ < 0) return;
    ::kill(daemon_, SIGKILL);
    ::waitpid(daemon_, nullptr, 0);
    daemon_ = -1;
    Connection connection(bus_.address());
    (void)comesTrue([&] { return !connection.isOwned(); }, 20s);
}

SessionBus::SessionBus() { ::setenv("DBUS_SESSION_BUS_ADDRESS", bus_.address().c_str(), 1); }
SessionBus::~SessionBus() { ::unsetenv("DBUS_SESSION_BUS_ADDRESS"); }

} // namespace vesk::test
