#pragma once

#include "tests/support/TemporaryFolder.hpp"

#include <string>
#include <sys/types.h>
#include <vector>

namespace vesk::test {

/// An X server without a screen, a window manager and a keyboard, for as long as the object lives. The process's
/// environment names it meanwhile, with a home and a runtime folder of its own. Throws std::runtime_error, with the
/// package's name where a program is missing.
class VirtualDesktop {
public:
    VirtualDesktop();
    ~VirtualDesktop();
    VirtualDesktop(const VirtualDesktop&) = delete;
    VirtualDesktop& operator=(const VirtualDesktop&) = delete;

    const std::string& display() const { return display_; }
    const std::string& home() const { return folder_.path(); }
    /// Waits for a window of that exact title, of another program than the last one, brings it to the front and presses
    /// keys.
    void press(const std::string& title, const std::vector<std::string>& keys);

private:
    void setVariable(const std::string& name, const std::string& value);

    TemporaryFolder folder_;
    std::string display_, lastProgram_;
    std::vector<pid_t> servers_;
    std::vector<std::string> variables_;
};

} // namespace vesk::test
