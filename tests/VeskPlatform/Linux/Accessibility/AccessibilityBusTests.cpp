#include "VeskPlatform/Linux/Accessibility/AccessibilityBus.hpp"

#include "VeskPlatform/Linux/Bus/AccessibilityAddress.hpp"

#include "tests/VeskPlatform/Linux/Accessibility/AccessibleWorld.hpp"
#include "tests/fakes/FakeBasics.hpp"
#include "tests/support/MessagingBuses.hpp"

#include <gmock/gmock.h>

namespace vesk::test {
namespace {

/// Tells the address of the accessibility bus.
class FakeAccessibilityLauncher : public BusService {
public:
    explicit FakeAccessibilityLauncher(std::string address) : address_(std::move(address)) {}
    ~FakeAccessibilityLauncher() override { stop(); }

protected:
    int answer(sd_bus_message& call) override {
        if (!is(call, "org.a11y.Bus", "GetAddress")) return 0;
        return reply(call, [this](sd_bus_message& message) { sd_bus_message_append(&message, "s", address_.c_str()); });
    }

private:
    std::string address_;
};

class AccessibilityBusTests : public AccessibleWorld {
protected:
    FakeEnvironment environment;

    std::string titleThrough(AccessibilityTree& through) {
        const auto root = runTask(through.applicationElement(::getpid()));
        const auto answers = runTask(through.read({root}, {{"AXTitle"}, {}}));
        return valueIn<std::string>(answers.at(0), "AXTitle").value_or("");
    }
    std::string failure() {
        try {
            openAccessibilityTree({environment, "", {}});
        } catch (const AccessibilityUnavailable& error) {
            EXPECT_EQ(error.domain(), "VeskAccessibility");
            EXPECT_EQ(error.code(), 1);
            return error.description();
        }
        return "none";
    }
};

TEST_F(AccessibilityBusTests, TheEnvironmentNamesTheBus) {
    application.objects[root()].name = "Example";
    open();
    const ScopedVariables nowhere(noBuses());
    environment.variables["AT_SPI_BUS_ADDRESS"] = bus.address();
    EXPECT_EQ(titleThrough(*openAccessibilityTree({environment, "", {}})), "Example");
}

TEST_F(AccessibilityBusTests, ElseTheSessionKnowsIt) {
    application.objects[root()].name = "Example";
    open();
    const PrivateBus session;
    FakeAccessibilityLauncher launcher(bus.address());
    launcher.serve(session.address(), "org.a11y.Bus");
    const ScopedVariables variables({{"DBUS_SESSION_BUS_ADDRESS", session.address()}});
    environment.variables["AT_SPI_BUS_ADDRESS"] = "";
    EXPECT_EQ(titleThrough(*openAccessibilityTree({environment, "", {}})), "Example");
}

TEST_F(AccessibilityBusTests, ABusThatCannotBeReachedIsToldWithItsPackage) {
    const std::string package = "It comes with the Debian package at-spi2-core.";
    {
        const ScopedVariables nowhere(noBuses());
        EXPECT_THAT(failure(), ::testing::EndsWith(package)) << "no session";
        for (const char* address : {"unix:path=/nonexistent/bus", "nonsense", "unix:"}) {
            environment.variables["AT_SPI_BUS_ADDRESS"] = address;
            EXPECT_THAT(failure(), ::testing::EndsWith(package)) << address;
        }
    }
    environment.variables.clear();
    const ScopedVariables variables({{"DBUS_SESSION_BUS_ADDRESS", bus.address()}});
    EXPECT_THAT(failure(), ::testing::EndsWith(package)) << "a session without accessibility";
    FakeAccessibilityLauncher launcher("unix:path=/nonexistent/bus");
    launcher.serve(bus.address(), "org.a11y.Bus");
    EXPECT_THAT(failure(), ::testing::EndsWith(package)) << "a bus that has gone";
}

} // namespace
} // namespace vesk::test
