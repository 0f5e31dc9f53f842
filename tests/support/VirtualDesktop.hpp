#pragma once

#include "tests/support/TemporaryFolder.hpp"

#include <functional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace vesk::test {

struct VirtualScreen {
    /// Width, height and depth.
    std::string format = "800x600x24";
    bool hasWindowManager = true;
};

/// An X server without a screen, a window manager and a keyboard, for as long as the object lives. The process's
/// environment names it meanwhile, with a home and a runtime folder of its own. Throws std::runtime_error, with the
/// package's name where a program is missing.
class VirtualDesktop {
public:
    explicit VirtualDesktop(const VirtualScreen& screen = {});
    ~VirtualDesktop();
    VirtualDesktop(const VirtualDesktop&) = delete;
    VirtualDesktop& operator=(const VirtualDesktop&) = delete;

    const std::string& display() const { return display_; }
    const std::string& home() const { return folder_.path(); }
    /// Waits for a window of that exact title, of another program than the last one, brings it to the front and presses
    /// keys.
    void press(const std::string& title, const std::vector<std::string>& keys);
    /// Runs a program of the system to its end; its first line of output. Throws where it fails.
    std::string run(const std::string& program, const std::vector<std::string>& arguments) const;
    /// Starts one that lives until the desktop goes.
    pid_t launch(const std::string& program, const std::vector<std::string>& arguments);
    /// Kills a program that `launch` has started.
    void kill(pid_t program);
    /// Whose window gets the keys; 0 where none does.
    pid_t focusedProgram() const;
    /// Kills the server.
    void end();
    pid_t server() const { return server_; }
    /// A variable of the process for as long as the desktop lives.
    void setVariable(const std::string& name, const std::string& value);

private:
    TemporaryFolder folder_;
    std::string display_, lastProgram_;
    pid_t server_ = 0;
    std::vector<pid_t> programs_;
    std::vector<std::string> variables_;
};

/// Waits until the condition holds, for a deadline that only a broken program reaches. Throws std::runtime_error with
/// `what` where it does not.
void eventually(const std::string& what, const std::function<bool()>& condition);

} // namespace vesk::test
