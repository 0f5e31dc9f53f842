#pragma once

#include "VeskPlatform/Linux/Wayland/DesktopPortal.hpp"
#include "tests/fakes/FakeDesktopPortal.hpp"
#include "tests/support/MessagingBuses.hpp"

#include <gtest/gtest.h>

namespace vesk::test {

/// A session bus with portals, once they serve.
class PortalWorld : public ::testing::Test {
protected:
    PrivateBus bus_;
    ScopedVariables variables_{{{"DBUS_SESSION_BUS_ADDRESS", bus_.address()}}};
    FakeDesktopPortal desktop;
    DesktopPortal portal{{.answer = std::chrono::seconds(10), .user = std::chrono::seconds(10)}};

    using Lines = std::vector<std::string>;

    void serve() { desktop.serveAt(bus_.address()); }
};

} // namespace vesk::test
