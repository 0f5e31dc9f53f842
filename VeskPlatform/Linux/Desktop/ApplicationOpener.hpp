#pragma once

#include "VeskSupport/ErrorRecord.hpp"

#include <optional>
#include <string>
#include <vector>

namespace vesk {

class DesktopEntry;
class DesktopFiles;
class Environment;

/// A program cannot be started for want of another one. The description names the Debian package to install. Domain
/// "VeskApplicationOpener", code 1.
class OpenerMissing : public ErrorRecord {
public:
    explicit OpenerMissing(const std::string& description) : ErrorRecord("VeskApplicationOpener", 1, description) {}
};

/// Starts programs as the desktop's menu does: through GIO's launcher where it is installed, else by the command of the
/// desktop file. A program that runs already and knows how shows its window instead. What is started belongs to nobody.
class ApplicationOpener {
public:
    /// `folders` are those of the system's programs.
    ApplicationOpener(Environment& environment, DesktopFiles& files,
                      std::vector<std::string> folders = {"/usr/bin", "/bin"});

    /// `-b IDENTIFIER` of a desktop file, or `-a` and the path of one or of a program, or a program's name. 0 where it
    /// was started and 1 where there is none or it would not start. Throws OpenerMissing.
    int run(const std::vector<std::string>& arguments);

private:
    int open(const std::string& path);
    int launch(const std::string& desktopFile);
    int startByCommand(const DesktopEntry& entry, const std::string& desktopFile);
    std::optional<std::string> absoluteProgram(const std::string& name) const;

    Environment& environment_;
    DesktopFiles& files_;
    std::vector<std::string> folders_;
};

} // namespace vesk
