#pragma once

#include "VeskPlatform/Linux/ProcessEnvironment.hpp"
#include "VeskPlatform/Linux/X11/X11WindowSystem.hpp"
#include "tests/support/VirtualDesktop.hpp"

#include <gmock/gmock.h>
#include <memory>
#include <string>

namespace vesk::test {

/// A desktop for all tests of a suite, since starting one takes longer than they do, and a connection for each.
class X11World : public ::testing::Test {
protected:
    static void SetUpTestSuite() { desktop = std::make_unique<VirtualDesktop>(); }
    static void TearDownTestSuite() { desktop.reset(); }

    static std::unique_ptr<X11WindowSystem> connect(Environment& environment) {
        return std::make_unique<X11WindowSystem>(
            DesktopSurroundings{environment, desktop->home(), [](const std::string&) {}});
    }
    /// Waits until the program has the attention, and the keys too: a busy window manager tells the one before the
    /// other.
    void awaitFront(pid_t program) {
        eventually("the window of process " + std::to_string(program), [&] {
            const auto front = session->runningApplications().frontmost();
            return front && front->processIdentifier == program && desktop->focusedProgram() == program;
        });
    }

    static inline std::unique_ptr<VirtualDesktop> desktop;
    ProcessEnvironment environment;
    std::unique_ptr<X11WindowSystem> session = connect(environment);
};

} // namespace vesk::test
