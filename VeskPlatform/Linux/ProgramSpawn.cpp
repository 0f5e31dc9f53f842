#include "VeskPlatform/Linux/ProgramSpawn.hpp"

#include <csignal>
#include <unistd.h>

namespace vesk {

std::vector<char*> argumentPointers(const std::vector<std::string>& arguments) {
    std::vector<char*> pointers;
    pointers.reserve(arguments.size() + 1);
    for (const std::string& argument : arguments) pointers.push_back(const_cast<char*>(argument.c_str()));
    pointers.push_back(nullptr);
    return pointers;
}

void keepStatusOfChildren() {
    struct sigaction current {};
    if (::sigaction(SIGCHLD, nullptr, &current) == 0 && current.sa_handler == SIG_IGN) std::signal(SIGCHLD, SIG_DFL);
}

ProgramSpawn::ProgramSpawn() {
    sigset_t all, none;
    ::sigfillset(&all);
    ::sigemptyset(&none);
    ::posix_spawnattr_init(&attributes_);
    ::posix_spawnattr_setsigdefault(&attributes_, &all);
    ::posix_spawnattr_setsigmask(&attributes_, &none);
    ::posix_spawn_file_actions_init(&actions_);
}

ProgramSpawn::~ProgramSpawn() {
    ::posix_spawn_file_actions_destroy(&actions_);
    ::posix_spawnattr_destroy(&attributes_);
}

void ProgramSpawn::note(int failure) {
    if (failure_ == 0) failure_ = failure;
}

void ProgramSpawn::useNull(int stream, int openFlags) {
    note(::posix_spawn_file_actions_addopen(&actions_, stream, "/dev/null", openFlags, 0));
}
void ProgramSpawn::useDescriptor(int stream, int descriptor) {
    note(::posix_spawn_file_actions_adddup2(&actions_, descriptor, stream));
}
void ProgramSpawn::enterFolder(int folder) { note(::posix_spawn_file_actions_addfchdir_np(&actions_, folder)); }

int ProgramSpawn::start(pid_t& child, const std::string& path, const std::vector<char*>& arguments,
                        char* const* environment) {
    const int flags = POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK | (hasOwnSession_ ? POSIX_SPAWN_SETSID : 0);
    note(::posix_spawnattr_setflags(&attributes_, static_cast<short>(flags)));
    note(::posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1));
    if (failure_ != 0) return failure_;
    keepStatusOfChildren();
    return ::posix_spawn(&child, path.c_str(), &actions_, &attributes_, arguments.data(), environment);
}

} // namespace vesk
