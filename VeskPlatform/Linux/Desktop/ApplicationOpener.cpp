#include "VeskPlatform/Linux/Desktop/ApplicationOpener.hpp"

#include "VeskPlatform/Environment.hpp"
#include "VeskPlatform/Linux/ChildProcess.hpp"
#include "VeskPlatform/Linux/Desktop/DesktopFiles.hpp"

#include <algorithm>
#include <optional>
#include <string_view>
#include <unistd.h>
#include <utility>

namespace vesk {

namespace {

constexpr int done = 0, failed = 1;

std::vector<std::string> searchPath(Environment& environment) {
    std::vector<std::string> folders;
    const std::string listed = environment.value("PATH").value_or("/usr/local/bin:/usr/bin:/bin");
    for (std::string_view rest = listed; !rest.empty();) {
        const auto end = std::min(rest.find(':'), rest.size());
        if (rest.starts_with('/')) folders.emplace_back(rest.substr(0, end)); // never the working directory
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return folders;
}

} // namespace

ApplicationOpener::ApplicationOpener(Environment& environment, DesktopFiles& files, std::vector<std::string> folders)
    : environment_(environment), files_(files), folders_(std::move(folders)) {}

int ApplicationOpener::run(const std::vector<std::string>& arguments) {
    if (arguments.size() != 2) return failed;
    const std::string &option = arguments[0], &target = arguments[1];
    if (option == "-b") {
        const auto file = files_.withIdentifier(target);
        return file ? launch(file->path) : failed;
    }
    if (option != "-a") return failed;
    if (target.starts_with('/')) return open(target);
    auto file = files_.withName(target);
    if (!file) file = files_.withIdentifier(target);
    return file ? launch(file->path) : failed;
}

int ApplicationOpener::open(const std::string& path) {
    if (path.ends_with(".desktop")) return launch(path);
    return startDetached({path}) ? done : failed;
}

int ApplicationOpener::launch(const std::string& desktopFile) {
    const auto entry = readDesktopEntry(desktopFile);
    if (!entry) return failed;
    if (const auto launcher = installedProgram("gio", folders_))
        if (const auto status = runQuietly({*launcher, "launch", desktopFile})) return *status == 0 ? done : failed;
    return startByCommand(*entry, desktopFile);
}

int ApplicationOpener::startByCommand(const DesktopEntry& entry, const std::string& desktopFile) {
    std::vector<std::string> command = startCommand(entry, desktopFile, files_.locales());
    if (command.empty() && entry.isTrue("DBusActivatable"))
        throw OpenerMissing(desktopFile + " can only be started by gio; install the package libglib2.0-bin.");
    if (command.empty()) return failed;
    const auto program = absoluteProgram(command.front());
    if (!program) return failed;
    command.front() = *program;
    if (entry.isTrue("Terminal")) {
        const auto terminal = installedProgram("x-terminal-emulator", folders_);
        if (!terminal)
            throw OpenerMissing(desktopFile
                                + " needs a terminal window; install a terminal, such as the package xterm.");
        command.insert(command.begin(), {*terminal, "-e"});
    }
    const std::string folder = entry.text("Path").value_or("");
    const auto changer = folder.empty() ? std::nullopt : installedProgram("env", folders_);
    if (changer) command.insert(command.begin(), {*changer, "--chdir=" + folder});
    return startDetached(command) ? done : failed;
}

std::optional<std::string> ApplicationOpener::absoluteProgram(const std::string& name) const {
    if (name.starts_with('/')) return ::access(name.c_str(), X_OK) == 0 ? std::optional(name) : std::nullopt;
    return installedProgram(name, searchPath(environment_));
}

} // namespace vesk
