#pragma once

#include <spawn.h>
#include <string>
#include <sys/types.h>
#include <vector>

namespace vesk {

/// How a child of this process begins: posix_spawn(3), since many threads start programs at once and a fork would copy
/// what they hold. It has every signal at its default and none blocked (this process ignores SIGPIPE, its threads may
/// block others, and both would be inherited), and no descriptors but its three standard streams.
class ProgramSpawn {
public:
    ProgramSpawn();
    ~ProgramSpawn();
    ProgramSpawn(const ProgramSpawn&) = delete;
    ProgramSpawn& operator=(const ProgramSpawn&) = delete;

    /// Done in the order of these calls, before the program runs. A stream that is not named is inherited.
    void useNull(int stream, int openFlags);
    void useDescriptor(int stream, int descriptor);
    void enterFolder(int folder);
    /// A session of its own, which no terminal of this one ends.
    void makeSession() { hasOwnSession_ = true; }

    /// Starts the program at `path`. Both lists end with a null pointer, `arguments` begins with the program's name.
    /// The error number of a failure, with nothing left running; else 0, and the child's number in `child`.
    int start(pid_t& child, const std::string& path, const std::vector<char*>& arguments, char* const* environment);

private:
    void note(int failure);

    posix_spawnattr_t attributes_{};
    posix_spawn_file_actions_t actions_{};
    bool hasOwnSession_ = false;
    int failure_ = 0;
};

/// The arguments as execve(2) wants them, with a null pointer at the end; valid while they are.
std::vector<char*> argumentPointers(const std::vector<std::string>& arguments);

/// Whoever started this process may have left SIGCHLD ignored to it, and the kernel then keeps no status of children.
void keepStatusOfChildren();

} // namespace vesk
