#include "tests/support/BackgroundPrograms.hpp"

#include "VeskPlatform/Linux/ChildProcess.hpp"

#include <fcntl.h>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace vesk::test {

std::string requiredProgram(const std::string& name, const std::string& package) {
    const auto path = installedProgram(name);
    if (!path) throw std::runtime_error(name + " is not installed: apt install " + package);
    return *path;
}

pid_t startInBackground(const std::vector<std::string>& arguments) {
    std::vector<char*> pointers;
    for (const std::string& argument : arguments) pointers.push_back(const_cast<char*>(argument.c_str()));
    pointers.push_back(nullptr);
    const pid_t child = ::fork();
    if (child != 0) return child;
    const int null = ::open("/dev/null", O_RDWR);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) ::dup2(null, stream);
    ::execv(pointers[0], pointers.data());
    ::_exit(127);
}

bool isListening(const std::string& path) {
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    const bool answered = ::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    ::close(socket);
    return answered;
}

} // namespace vesk::test
