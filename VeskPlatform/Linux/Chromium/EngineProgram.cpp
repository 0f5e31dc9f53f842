#include "VeskPlatform/Linux/Chromium/EngineProgram.hpp"

#include "VeskPlatform/Environment.hpp"
#include "VeskPlatform/Linux/ChildProcess.hpp"
#include "VeskPlatform/Linux/Chromium/WebEngineError.hpp"

#include <cerrno>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vesk {
namespace {

std::string enginePath(const std::vector<std::string>& folders) {
    for (const char* name : {"chromium-headless-shell", "chromium"})
        if (auto path = installedProgram(name, folders)) return *path;
    throw WebEngineError(WebEngineError::Kind::missing,
                         "No browser engine to render HTML with was found. Install the Debian package "
                         "chromium-headless-shell (or chromium).");
}

std::optional<EngineUser> unprivilegedUser() {
    if (::geteuid() != 0) return std::nullopt;
    const passwd* nobody = ::getpwnam("nobody");
    if (nobody == nullptr)
        throw WebEngineError(WebEngineError::Kind::notStarted,
                             "The browser engine is not run as root, and there is no user \"nobody\" to run it as.");
    return EngineUser{nobody->pw_uid, nobody->pw_gid};
}

/// The home is where the user's own fonts are; another user has no business there. The engine asks no bus for anything.
std::vector<std::string> engineEnvironment(Environment& environment, const std::string& profileFolder, bool isOwnUser) {
    std::vector<std::string> variables{"PATH=/usr/bin:/bin", "TMPDIR=" + profileFolder,
                                       "DBUS_SESSION_BUS_ADDRESS=disabled:", "DBUS_SYSTEM_BUS_ADDRESS=disabled:"};
    variables.push_back("HOME=" + (isOwnUser ? environment.homeDirectory() : profileFolder));
    for (const char* name : {"LANG", "LC_ALL", "LC_CTYPE", "TZ", "FONTCONFIG_FILE", "FONTCONFIG_PATH"})
        if (const auto value = environment.value(name)) variables.push_back(std::string(name) + "=" + *value);
    return variables;
}

/// The way to it is open to another user, the rest of the work folder is not.
std::string makeProfileFolder(const std::string& workFolder, const std::optional<EngineUser>& user) {
    std::string path = workFolder + "/engine";
    if (::mkdir(path.c_str(), 0700) != 0) throw PosixError(errno, path);
    if (user && (::chmod(workFolder.c_str(), 0711) != 0 || ::chown(path.c_str(), user->userId, user->groupId) != 0))
        throw PosixError(errno, path);
    return path;
}

} // namespace

EngineProgram engineProgram(Environment& environment, const std::vector<std::string>& folders,
                            const std::string& workFolder) {
    EngineProgram program{.path = enginePath(folders), .arguments = {}, .environment = {}, .user = unprivilegedUser()};
    const std::string profileFolder = makeProfileFolder(workFolder, program.user);
    program.environment = engineEnvironment(environment, profileFolder, !program.user);
    program.arguments = {program.path,
                         "--headless",
                         "--remote-debugging-pipe",
                         "--user-data-dir=" + profileFolder,
                         "--disable-gpu",
                         "--disable-software-rasterizer",
                         "--no-first-run",
                         "--disable-background-networking",
                         "--disable-breakpad",
                         "--disable-crash-reporter",
                         "--disable-extensions",
                         "--disable-sync",
                         "--password-store=basic",
                         "--mute-audio",
                         "--host-resolver-rules=MAP * ~NOTFOUND"}; // whatever slips past the page's own refusals
    if (environment.value("VESK_CHROMIUM_NO_SANDBOX") == "1") program.arguments.emplace_back("--no-sandbox");
    program.arguments.emplace_back("about:blank");
    return program;
}

} // namespace vesk
