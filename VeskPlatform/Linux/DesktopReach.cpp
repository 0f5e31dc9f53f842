#include "VeskPlatform/Linux/DesktopReach.hpp"

#include "VeskPlatform/Environment.hpp"
#include "VeskPlatform/Portable/FileDescriptor.hpp"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <netdb.h>
#include <poll.h>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>

namespace vesk {

namespace {

constexpr int patienceMilliseconds = 2000;

bool connects(int family, const sockaddr* address, socklen_t length) {
    const FileDescriptor socket(::socket(family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (!socket) return false;
    if (::connect(socket.get(), address, length) == 0) return true;
    // EAGAIN is a local server with a full queue: it is there.
    if (errno == EAGAIN) return true;
    if (errno != EINPROGRESS) return false;
    pollfd wait{socket.get(), POLLOUT, 0};
    if (::poll(&wait, 1, patienceMilliseconds) <= 0) return false;
    int failure = 0;
    socklen_t size = sizeof failure;
    return ::getsockopt(socket.get(), SOL_SOCKET, SO_ERROR, &failure, &size) == 0 && failure == 0;
}

/// `path` may begin with a null byte, for a name in the abstract space.
bool localSocketAnswers(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.empty() || path.size() >= sizeof address.sun_path) return false;
    std::memcpy(address.sun_path, path.data(), path.size());
    const std::size_t length = offsetof(sockaddr_un, sun_path) + path.size() + (path[0] == '\0' ? 0 : 1);
    return connects(AF_UNIX, reinterpret_cast<const sockaddr*>(&address), static_cast<socklen_t>(length));
}

bool remoteDisplayAnswers(const std::string& host, int number) {
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    if (::getaddrinfo(host.c_str(), std::to_string(6000 + number).c_str(), &hints, &found) != 0) return false;
    const std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)> addresses(found, &::freeaddrinfo);
    for (const addrinfo* a = found; a != nullptr; a = a->ai_next)
        if (connects(a->ai_family, a->ai_addr, a->ai_addrlen)) return true;
    return false;
}

/// `[host]:number[.screen]`, as X(7) tells under "Display names".
bool x11Answers(const std::string& display) {
    const auto colon = display.rfind(':');
    if (colon == std::string::npos) return false;
    const std::string host = display.substr(0, colon);
    const auto end = std::min(display.find('.', colon), display.size());
    const std::string number = display.substr(colon + 1, end - colon - 1);
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    if (number.empty() || number.size() > 5 || !std::all_of(number.begin(), number.end(), isDigit)) return false;
    if (!host.empty() && host != "unix") return remoteDisplayAnswers(host, std::stoi(number));
    const std::string path = "/tmp/.X11-unix/X" + number;
    return localSocketAnswers(std::string(1, '\0') + path) || localSocketAnswers(path);
}

} // namespace

bool desktopCanBeReached(Environment& environment) {
    const std::string wayland = environment.value("WAYLAND_DISPLAY").value_or("");
    if (wayland.starts_with('/') && localSocketAnswers(wayland)) return true;
    const std::string runtime = environment.value("XDG_RUNTIME_DIR").value_or("");
    if (!wayland.empty() && runtime.starts_with('/') && localSocketAnswers(runtime + "/" + wayland)) return true;
    return x11Answers(environment.value("DISPLAY").value_or(""));
}

} // namespace vesk
