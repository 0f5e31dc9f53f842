#pragma once

#include "tests/support/VirtualDesktop.hpp"

#include <string>
#include <sys/types.h>
#include <vector>

namespace vesk::test {

/// A virtual desktop with a session bus of its own, on which the programs become accessible. Where the tests run as
/// root, the bus and the programs are an unprivileged user's, since a browser keeps its sandbox only then. Throws
/// std::runtime_error, with the package's name where a program is missing.
class AccessibleDesktop {
public:
    AccessibleDesktop();

    VirtualDesktop& desktop() { return desktop_; }
    const std::string& home() const { return desktop_.home(); }
    /// Starts a program of the package that lives until the desktop goes; its process.
    pid_t launch(const std::string& program, const std::string& package, std::vector<std::string> arguments = {});
    /// A file in the home folder that the programs can read; its path.
    std::string write(const std::string& name, const std::string& bytes);
    /// Presses keys, named as in xdotool, in the window that has the keyboard focus.
    void press(const std::vector<std::string>& keys);

private:
    VirtualDesktop desktop_;
};

} // namespace vesk::test
