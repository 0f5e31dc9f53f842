#include "tests/VeskPlatform/Linux/X11/TestWindow.hpp"
#include "tests/VeskPlatform/Linux/X11/X11World.hpp"
#include "tests/fakes/RunTask.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <algorithm>
#include <filesystem>

namespace vesk::test {
namespace {

using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::Optional;

class X11RunningApplicationsTests : public X11World {
protected:
    static void SetUpTestSuite() {
        X11World::SetUpTestSuite();
        data = std::make_unique<TemporaryFolder>();
        desktop->setVariable("XDG_DATA_HOME", data->path());
        desktop->setVariable("XDG_DATA_DIRS", data->path() + "/system");
        desktop->setVariable("LC_ALL", "de_DE.UTF-8");
        data->write("applications/org.example.Probe.desktop",
                    "[Desktop Entry]\nName=Probe\nName[de]=Sonde\nStartupWMClass=Probe\nExec=true\n");
        data->write("applications/named.desktop", "[Desktop Entry]\nName=Named After\nExec=true\n");
        data->write("applications/org.example.Told.desktop", "[Desktop Entry]\nName=Told\nExec=true\n");
    }
    static void TearDownTestSuite() {
        data.reset();
        X11World::TearDownTestSuite();
    }

    RunningApplications& applications() { return session->runningApplications(); }
    std::vector<std::string> names() {
        std::vector<std::string> found;
        for (const RunningApplication& application : applications().list())
            found.push_back(application.localizedName.value_or("-"));
        return found;
    }
    xcb_window_t front() { return program.rootNumbers("_NET_ACTIVE_WINDOW").at(0); }
    void awaitFrontWindow(xcb_window_t window) {
        eventually("the window in front", [&] { return front() == window; });
    }
    void awaitNoWindows() {
        eventually("an empty desktop", [&] { return program.rootNumbers("_NET_CLIENT_LIST").empty(); });
    }

    static inline std::unique_ptr<TemporaryFolder> data;
    TestProgram program{desktop->display()};
};

TEST_F(X11RunningApplicationsTests, AnEmptyDesktopHasNone) {
    awaitNoWindows();
    EXPECT_THAT(applications().list(), ElementsAre());
    EXPECT_EQ(applications().frontmost(), std::nullopt);
}

TEST_F(X11RunningApplicationsTests, AnApplicationIsWhatItsDesktopFileSays) {
    program.show({});
    const RunningApplication expected{.processIdentifier = ::getpid(),
                                      .bundleIdentifier = "org.example.Probe",
                                      .localizedName = "Sonde",
                                      .bundlePath = *data / "applications/org.example.Probe.desktop"};
    eventually("the application", [&] { return applications().frontmost().has_value(); });
    EXPECT_EQ(applications().frontmost(), expected);
    EXPECT_THAT(applications().list(), ElementsAre(expected));
}

TEST_F(X11RunningApplicationsTests, TheDesktopFileIsFoundByWhatTheWindowTells) {
    struct Case {
        const char* name;
        TestProgram::Look look;
        std::optional<std::string> identifier, shown;
    };
    const Case cases[]{
        {"application id before class", {.applicationId = "org.example.Told"}, "org.example.Told", "Told"},
        {"unknown application id", {.applicationId = "org.example.None"}, "org.example.Probe", "Sonde"},
        {"startup class", {}, "org.example.Probe", "Sonde"},
        {"file of the class's name", {.instanceName = "x", .className = "Named"}, "named", "Named After"},
        {"no file", {.instanceName = "x", .className = "Stranger"}, std::nullopt, "Stranger"},
        {"instance only", {.instanceName = "alone", .className = ""}, std::nullopt, "alone"},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.name);
        const xcb_window_t window = program.show(each.look);
        awaitFrontWindow(window);
        const auto found = applications().frontmost();
        ASSERT_TRUE(found);
        EXPECT_EQ(found->bundleIdentifier, each.identifier);
        EXPECT_EQ(found->localizedName, each.shown);
        program.close(window);
        awaitNoWindows();
    }
}

TEST_F(X11RunningApplicationsTests, WindowsOfAProcessAreOneApplicationInOrderOfAge) {
    program.show({.className = "Second", .process = 20});
    program.show({.className = "Probe", .process = 10});
    program.show({.className = "Second", .process = 20});
    const xcb_window_t last = program.show({.instanceName = "x", .className = "Helper", .process = 10});
    awaitFrontWindow(last);
    EXPECT_THAT(names(), ElementsAre("Second", "Sonde"));
    EXPECT_THAT(applications().list(), ElementsAre(Field(&RunningApplication::processIdentifier, 20),
                                                   Field(&RunningApplication::processIdentifier, 10)));
}

TEST_F(X11RunningApplicationsTests, ADialogInFrontIsTheApplicationOfItsProcess) {
    program.show({.process = 10});
    awaitFrontWindow(program.show({.instanceName = "x", .className = "Dialog", .process = 10}));
    EXPECT_THAT(applications().frontmost(), Optional(applications().list().front()));
    EXPECT_THAT(applications().frontmost(), Optional(Field(&RunningApplication::localizedName, "Sonde")));
}

TEST_F(X11RunningApplicationsTests, AProcessWithTwoDesktopFilesIsTwoApplications) {
    program.show({});
    awaitFrontWindow(program.show({.instanceName = "x", .className = "named"}));
    EXPECT_THAT(names(), ElementsAre("Sonde", "Named After"));
}

TEST_F(X11RunningApplicationsTests, TheServerTellsTheProcessOfAWindowThatDoesNot) {
    awaitFrontWindow(program.show({.process = std::nullopt}));
    EXPECT_THAT(applications().frontmost(), Optional(Field(&RunningApplication::processIdentifier, ::getpid())));
}

TEST_F(X11RunningApplicationsTests, PanelsAndDesktopsAreNoUserInterface) {
    program.show({.className = "Panel", .type = "_NET_WM_WINDOW_TYPE_DOCK", .process = 30});
    program.show({.className = "Ground", .type = "_NET_WM_WINDOW_TYPE_DESKTOP", .process = 31});
    program.show({.className = "Panel", .type = "_NET_WM_WINDOW_TYPE_DOCK", .process = 32});
    awaitFrontWindow(program.show({.className = "Panel", .process = 32}));
    EXPECT_THAT(applications().list(), ElementsAre(Field(&RunningApplication::hasUserInterface, false),
                                                   Field(&RunningApplication::hasUserInterface, false),
                                                   Field(&RunningApplication::hasUserInterface, true)));
}

TEST_F(X11RunningApplicationsTests, MenusAreNoApplications) {
    awaitFrontWindow(program.show({}));
    program.show({.className = "Menu", .process = 40, .isManaged = false});
    EXPECT_THAT(names(), ElementsAre("Sonde"));
}

TEST_F(X11RunningApplicationsTests, ActivationTakesTheWindowThatWasUsedLast) {
    const xcb_window_t older = program.show({.x = 0}), newer = program.show({.x = 200}),
                       other = program.show({.className = "Other", .process = 50, .x = 400});
    awaitFrontWindow(other);
    const auto target = applications().list().at(0);
    ASSERT_TRUE(applications().activate(target));
    awaitFrontWindow(newer);
    EXPECT_EQ(program.rootNumbers("_NET_CLIENT_LIST_STACKING"), (std::vector{other, older, newer}));
}

TEST_F(X11RunningApplicationsTests, ActivationGoesByTheTimesThatProgramsNote) {
    const xcb_window_t first = program.show({.userTime = 900, .x = 0});
    program.show({.userTime = 800, .x = 200});
    awaitFrontWindow(program.show({.className = "Other", .process = 50, .x = 400}));
    const auto target = applications().list().at(0);
    program.number(first, "_NET_WM_USER_TIME", XCB_ATOM_CARDINAL, 4'000'000'000);
    program.number(program.mapped.at(1), "_NET_WM_USER_TIME", XCB_ATOM_CARDINAL, 3'999'999'999);
    ASSERT_TRUE(applications().activate(target));
    awaitFrontWindow(first);
}

TEST_F(X11RunningApplicationsTests, AMinimizedWindowComesLastAndComesBackAlone) {
    const xcb_window_t open = program.show({.x = 0}), hidden = program.show({.x = 200});
    desktop->run("xdotool", {"windowminimize", "--sync", std::to_string(hidden)});
    awaitFrontWindow(program.show({.className = "Other", .process = 50, .x = 400}));
    const auto target = applications().list().at(0);
    ASSERT_TRUE(applications().activate(target));
    awaitFrontWindow(open);
    desktop->run("xdotool", {"windowminimize", "--sync", std::to_string(open)});
    ASSERT_TRUE(applications().activate(target));
    eventually("a window that comes back", [&] { return front() == hidden || front() == open; });
}

TEST_F(X11RunningApplicationsTests, AnApplicationThatIsGoneIsNotActivated) {
    EXPECT_FALSE(applications().activate({.processIdentifier = 12345, .localizedName = "Gone"}));
}

TEST_F(X11RunningApplicationsTests, ARealProgramIsFoundAndActivated) {
    const pid_t first = desktop->launch("xterm", {}), second = desktop->launch("xterm", {});
    eventually("two terminals", [&] { return applications().list().size() == 2; });
    for (const pid_t wanted : {first, second, first}) {
        const auto all = applications().list();
        const auto found = std::ranges::find(all, wanted, &RunningApplication::processIdentifier);
        ASSERT_NE(found, all.end());
        ASSERT_TRUE(applications().activate(*found));
        awaitFront(wanted);
    }
    desktop->kill(first);
    desktop->kill(second);
}

TEST_F(X11RunningApplicationsTests, TheOpenerStartsAProgramByItsDesktopFile) {
    const std::string made = *data / "started";
    data->write("applications/starter.desktop",
                "[Desktop Entry]\nType=Application\nName=Starter\nExec=touch " + made + "\n");
    EXPECT_EQ(runTask(applications().runOpener({"-b", "starter"})), 0);
    eventually("the started program", [&] { return std::filesystem::exists(made); });
    EXPECT_EQ(runTask(applications().runOpener({"-b", "absent"})), 1);
}

class X11WithoutManagerTests : public ::testing::Test {
protected:
    VirtualDesktop desktop{VirtualScreen{.hasWindowManager = false}};
    ProcessEnvironment environment;
    X11WindowSystem session{DesktopSurroundings{environment, desktop.home(), [](const std::string&) {}}};
    TestProgram program{desktop.display()};
};

TEST_F(X11WithoutManagerTests, VisibleWindowsAreListedAndActivated) {
    program.show({.className = "One", .process = 11});
    program.show({.className = "Two", .process = 12});
    program.show({.className = "Menu", .process = 13, .isManaged = false});
    auto& applications = session.runningApplications();
    const auto all = applications.list();
    ASSERT_EQ(all.size(), 2U);
    EXPECT_EQ(applications.frontmost(), std::nullopt);
    for (const RunningApplication& each : all) {
        EXPECT_TRUE(applications.activate(each));
        EXPECT_THAT(applications.frontmost(), Optional(each));
        EXPECT_EQ(applications.list().back(), each) << "raised";
    }
}

/// A window manager that says what the test wants.
class X11PosedManagerTests : public X11WithoutManagerTests {
protected:
    X11PosedManagerTests() { program.manage(); }
    void tell(const std::string& property, const std::vector<std::uint32_t>& windows) {
        program.numbers(program.connection.root(), property, XCB_ATOM_WINDOW, windows);
    }
    static constexpr xcb_window_t gone = 0x7ABCDEF;
    const xcb_window_t one = program.show({.className = "One", .process = 11}),
                       two = program.show({.className = "Two", .process = 12});
    RunningApplications& applications = session.runningApplications();
};

TEST_F(X11PosedManagerTests, AnActiveWindowThatDoesNotExistIsNoApplication) {
    tell("_NET_ACTIVE_WINDOW", {one});
    EXPECT_THAT(applications.frontmost(), Optional(Field(&RunningApplication::processIdentifier, 11)));
    for (const auto& lie : std::vector<std::vector<std::uint32_t>>{{gone}, {0}, {}}) {
        tell("_NET_ACTIVE_WINDOW", lie);
        EXPECT_EQ(applications.frontmost(), std::nullopt);
    }
}

TEST_F(X11PosedManagerTests, AListedWindowThatDoesNotExistIsLeftOut) {
    tell("_NET_CLIENT_LIST", {gone, two, gone, one});
    EXPECT_THAT(applications.list(), ElementsAre(Field(&RunningApplication::processIdentifier, 12),
                                                 Field(&RunningApplication::processIdentifier, 11)));
}

TEST_F(X11PosedManagerTests, ActivationComesFromTheUserNowAndOtherWindowsAreRaisedBefore) {
    const xcb_window_t above = program.show({.className = "One", .process = 11});
    tell("_NET_CLIENT_LIST", {one, two, above});
    tell("_NET_CLIENT_LIST_STACKING", {one, above, two});
    tell("_NET_SUPPORTED", {program.atoms["_NET_RESTACK_WINDOW"]});
    ASSERT_TRUE(applications.activate(applications.list().at(0)));
    program.connection.synchronize();
    program.connection.dispatchEvents();
    ASSERT_EQ(program.messages.size(), 2U);
    const auto &raised = program.messages[0], &activated = program.messages[1];
    EXPECT_EQ(raised.type, program.atoms["_NET_RESTACK_WINDOW"]);
    EXPECT_EQ(raised.window, one);
    EXPECT_EQ(raised.data.data32[0], 2U) << "a pager";
    EXPECT_EQ(raised.data.data32[2], XCB_STACK_MODE_ABOVE);
    EXPECT_EQ(activated.type, program.atoms["_NET_ACTIVE_WINDOW"]);
    EXPECT_EQ(activated.window, above);
    EXPECT_EQ(activated.data.data32[0], 2U) << "a pager";
    EXPECT_GT(activated.data.data32[1], 1U) << "the server's clock";
}

TEST_F(X11PosedManagerTests, AManagerThatCannotRaiseIsOnlyAskedToActivate) {
    tell("_NET_CLIENT_LIST", {one, program.show({.className = "One", .process = 11})});
    ASSERT_TRUE(applications.activate(applications.list().at(0)));
    program.connection.synchronize();
    program.connection.dispatchEvents();
    ASSERT_EQ(program.messages.size(), 1U);
    EXPECT_EQ(program.messages[0].type, program.atoms["_NET_ACTIVE_WINDOW"]);
}

TEST_F(X11PosedManagerTests, WhatAManagerLeftBehindDoesNotCount) {
    tell("_NET_CLIENT_LIST", {one});
    tell("_NET_ACTIVE_WINDOW", {one});
    program.number(program.connection.root(), "_NET_SUPPORTING_WM_CHECK", XCB_ATOM_WINDOW, gone);
    EXPECT_EQ(applications.list().size(), 2U);
    EXPECT_EQ(applications.frontmost(), std::nullopt);
}

} // namespace
} // namespace vesk::test
