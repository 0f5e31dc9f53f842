#include "tests/support/BackgroundPrograms.hpp"

#include "VeskPlatform/Linux/ChildProcess.hpp"

#include <fcntl.h>
#include <stdexcept>
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

} // namespace vesk::test
