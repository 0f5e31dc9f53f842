#pragma once

#include <optional>
#include <string>
#include <vector>

namespace vesk {

class Environment;

/// Whom the engine runs as: the process's own user, or, where that is root, the user `nobody`, since the engine keeps
/// its sandbox only for an ordinary user.
struct EngineUser {
    unsigned userId = 0, groupId = 0;
};

/// How the browser engine is started.
struct EngineProgram {
    std::string path;
    std::vector<std::string> arguments;
    /// NAME=VALUE, all of it.
    std::vector<std::string> environment;
    /// None for the process's own user.
    std::optional<EngineUser> user;
};

/// The first of Debian's chromium-headless-shell and chromium that is there in one of `folders`. All that it keeps lies
/// in a folder of its own that is made below `workFolder`. The sandbox is on unless VESK_CHROMIUM_NO_SANDBOX is "1".
/// Throws WebEngineError where there is neither program, PosixError where the folder cannot be made.
EngineProgram engineProgram(Environment& environment, const std::vector<std::string>& folders,
                            const std::string& workFolder);

} // namespace vesk
