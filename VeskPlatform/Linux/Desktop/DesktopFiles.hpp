#pragma once

#include "VeskPlatform/Linux/Desktop/DesktopEntry.hpp"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace vesk {

class Environment;

struct DesktopFile {
    /// The path below the folder with `-` for `/`, without `.desktop`.
    std::string identifier;
    std::string path;
    /// In the language of the user's messages.
    std::string name;
};

/// What a window tells about the program that it belongs to; each may be empty.
struct WindowIdentity {
    /// The identifier itself, from programs that know it: `_GTK_APPLICATION_ID` on X11, `app_id` on Wayland.
    std::string applicationId{};
    std::string className{};
    std::string instanceName{};
};

/// The programs that the desktop knows: desktop files in `applications` below XDG_DATA_HOME and each of XDG_DATA_DIRS
/// (base directories 0.8). A file hides its namesakes in later folders; one that is marked as deleted hides them and is
/// none itself. Folders are listed once, and files read when they are first asked for.
class DesktopFiles {
public:
    explicit DesktopFiles(Environment& environment);

    std::optional<DesktopFile> withIdentifier(const std::string& identifier);
    /// By the identifier that the window tells, else by StartupWMClass, else a file named as its class, letter case
    /// aside where no file has it as it is.
    std::optional<DesktopFile> ofWindow(const WindowIdentity& window);
    /// By its name in the user's language or in all; letter case counts only where several have the name.
    std::optional<DesktopFile> withName(const std::string& name);

    const std::vector<std::string>& locales() const { return locales_; }

private:
    /// By identifier, in ascending order.
    using Paths = std::map<std::string, std::string>;

    const Paths& paths();
    void readStartupClasses();
    std::optional<DesktopFile> namedAsClass(const std::string& name);

    std::vector<std::string> folders_, locales_;
    std::optional<Paths> paths_;
    /// The identifier of the file that claims windows of a class.
    std::optional<std::map<std::string, std::string>> startupClasses_;
};

/// The entry in a file; none where it cannot be read.
std::optional<DesktopEntry> readDesktopEntry(const std::string& path);

} // namespace vesk
