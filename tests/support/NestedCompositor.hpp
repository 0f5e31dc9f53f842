#pragma once

#include "tests/support/TemporaryFolder.hpp"

#include <string>
#include <sys/types.h>
#include <vector>

namespace vesk::test {

/// A Wayland compositor without a screen. The process's environment names it for as long as the object lives. Throws
/// std::runtime_error, with the package's name where a program is missing.
class NestedCompositor {
public:
    /// Its monitors are windows of another such one, so that there can be several; `monitors` are sections `[output]`
    /// of weston.ini(5) for two. Programs find no windows and no keyboard.
    explicit NestedCompositor(const std::string& monitors);
    /// Its one monitor is a window of an X server without a screen, with a keyboard, so that windows have the focus.
    NestedCompositor();
    ~NestedCompositor();
    NestedCompositor(const NestedCompositor&) = delete;
    NestedCompositor& operator=(const NestedCompositor&) = delete;

    /// As in WAYLAND_DISPLAY.
    static constexpr const char* display = "vesk-inner";
    /// As in XDG_RUNTIME_DIR.
    const std::string& runtimeFolder() const { return folder_.path(); }
    /// Ends the compositor and waits for its end.
    void stop();
    /// Keeps the compositor from answering, and lets it go on.
    void pause();
    void resume();

private:
    void startServer(const std::vector<std::string>& arguments, const std::string& socket);
    void start(const std::vector<std::string>& arguments, const std::string& socket);

    TemporaryFolder folder_;
    std::vector<pid_t> servers_;
};

} // namespace vesk::test
