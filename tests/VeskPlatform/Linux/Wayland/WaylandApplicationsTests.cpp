#include "VeskPlatform/Linux/Wayland/WaylandApplications.hpp"

#include "VeskPlatform/Linux/Bus/AccessibilityAddress.hpp"
#include "tests/fakes/FakeAccessibleApplication.hpp"
#include "tests/fakes/FakeBasics.hpp"
#include "tests/fakes/RunTask.hpp"
#include "tests/support/MessagingBuses.hpp"

#include <gtest/gtest.h>

namespace vesk::test {
namespace {

/// A program that other programs can bring to the front, or not.
class FakeActivatable : public BusService {
public:
    ~FakeActivatable() override { stop(); }
    bool refuses = false;
    std::vector<std::string> activated() {
        const std::scoped_lock guard(lock_);
        return paths_;
    }

protected:
    int answer(sd_bus_message& call) override {
        if (!is(call, "org.freedesktop.Application", "Activate", "a{sv}")) return 0;
        if (refuses) return fail(call, "org.freedesktop.DBus.Error.Failed", "no");
        paths_.emplace_back(sd_bus_message_get_path(&call));
        return reply(call);
    }

private:
    std::vector<std::string> paths_;
};

/// "Letters" with a window in the background, then "org.example.Mail" with three, of which one is active. The desktop
/// knows only the second one, as "Mail".
class WaylandApplicationsTests : public ::testing::Test {
protected:
    TemporaryFolder folder;
    PrivateBus session, accessibility;
    ScopedVariables variables{{{"DBUS_SESSION_BUS_ADDRESS", session.address()}}};
    FakeEnvironment environment;
    FakeAccessibleApplication registry{"org.a11y.atspi.Registry"}, letters{"test.letters"}, mail{"test.mail"};
    std::int32_t self = ::getpid();

    void SetUp() override {
        environment.variables = {{"AT_SPI_BUS_ADDRESS", accessibility.address()},
                                 {"XDG_DATA_HOME", folder.path()},
                                 {"XDG_DATA_DIRS", folder / "none"}};
        folder.write("applications/org.example.Mail.desktop",
                     "[Desktop Entry]\nType=Application\nName=Mail\nExec=mail\n");
        for (FakeAccessibleApplication* application : {&letters, &mail})
            registry.objects[root].children.emplace_back(application->name(), root);
        letters.objects[root].name = "Letters";
        letters.add(root, "/1", ATSPI_ROLE_FRAME, {ATSPI_STATE_VISIBLE});
        mail.objects[root].name = "org.example.Mail";
        mail.add(root, "/1", ATSPI_ROLE_FRAME, {ATSPI_STATE_VISIBLE});
        mail.add(root, "/2", ATSPI_ROLE_FRAME, {ATSPI_STATE_VISIBLE, ATSPI_STATE_ACTIVE});
        mail.add(root, "/3", ATSPI_ROLE_FRAME, {ATSPI_STATE_VISIBLE});
        for (FakeAccessibleApplication* application : {&registry, &letters, &mail})
            application->serveAt(accessibility.address());
    }
    RunningApplication mailDescription() const {
        return {.processIdentifier = self,
                .bundleIdentifier = "org.example.Mail",
                .localizedName = "Mail",
                .bundlePath = folder / "applications/org.example.Mail.desktop"};
    }

    static constexpr const char* root = FakeAccessibleApplication::root;
};

TEST_F(WaylandApplicationsTests, ProgramsAreThoseOnTheAccessibilityBus) {
    WaylandApplications applications(environment);
    EXPECT_EQ(applications.list(), (std::vector<RunningApplication>{
                                       {.processIdentifier = self, .localizedName = "Letters"}, mailDescription()}));
}

TEST_F(WaylandApplicationsTests, TheOneWithTheActiveWindowIsInFront) {
    WaylandApplications applications(environment);
    EXPECT_EQ(applications.frontmost(), mailDescription());
    mail.change([&] { mail.objects["/2"].states.clear(); });
    EXPECT_EQ(applications.frontmost(), std::nullopt);
    letters.change([&] { letters.objects["/1"].states = {ATSPI_STATE_ACTIVE}; });
    EXPECT_EQ(applications.frontmost()->localizedName, "Letters");
}

TEST_F(WaylandApplicationsTests, AProgramIsAlsoFoundByTheNameThatPeopleKnow) {
    folder.write("applications/org.example.write.desktop",
                 "[Desktop Entry]\nType=Application\nName=Letters\nExec=write\n");
    EXPECT_EQ(WaylandApplications(environment).list().front().bundleIdentifier, "org.example.write");
}

TEST_F(WaylandApplicationsTests, AProgramThatHangsIsKnownByItsProcess) {
    letters.change([&] { letters.answersLeft = 0; });
    AccessibleApplications applications(environment, std::chrono::milliseconds(500));
    EXPECT_EQ(applications.list(), (std::vector<AccessibleApplication>{{self, ""}, {self, "org.example.Mail"}}));
    EXPECT_EQ(applications.active(), (AccessibleApplication{self, "org.example.Mail"}));
}

TEST_F(WaylandApplicationsTests, AProgramThatLeftTheBusIsNone) {
    letters.stop();
    EXPECT_EQ(WaylandApplications(environment).list(), std::vector<RunningApplication>{mailDescription()});
}

TEST_F(WaylandApplicationsTests, WithoutTheAccessibilityBusTheErrorNamesItsPackage) {
    environment.variables.erase("AT_SPI_BUS_ADDRESS");
    try {
        WaylandApplications(environment).list();
        ADD_FAILURE() << "no failure";
    } catch (const AccessibilityUnavailable& error) {
        EXPECT_NE(error.description().find("at-spi2-core"), std::string::npos);
    }
    environment.variables["AT_SPI_BUS_ADDRESS"] = "unix:path=/nonexistent/bus";
    EXPECT_THROW(WaylandApplications(environment).frontmost(), AccessibilityUnavailable);
}

TEST_F(WaylandApplicationsTests, AProgramIsAskedToComeToTheFront) {
    FakeActivatable program;
    WaylandApplications applications(environment);
    RunningApplication application{.processIdentifier = 1, .bundleIdentifier = "org.example.Mail-Reader"};
    EXPECT_FALSE(applications.activate(application)) << "it is not on the session bus";
    program.serve(session.address(), "org.example.Mail-Reader");
    EXPECT_TRUE(applications.activate(application));
    EXPECT_EQ(program.activated(), std::vector<std::string>{"/org/example/Mail_Reader"});
    program.change([&] { program.refuses = true; });
    EXPECT_FALSE(applications.activate(application));
    application.bundleIdentifier.reset();
    EXPECT_FALSE(applications.activate(application));
}

TEST_F(WaylandApplicationsTests, WhatIsNotInstalledCannotBeOpened) {
    WaylandApplications applications(environment);
    EXPECT_EQ(runTask(applications.runOpener({"-b", "org.example.none"})), 1);
}

} // namespace
} // namespace vesk::test
