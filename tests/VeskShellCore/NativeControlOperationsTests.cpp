#include "VeskShellCore/NativeControlOperations.hpp"

#include "tests/VeskShellCore/ControlFailure.hpp"
#include "tests/fakes/FakePlatform.hpp"
#include "tests/fakes/RunTask.hpp"

#include <functional>
#include <gtest/gtest.h>

namespace vesk::test {
namespace {

using namespace VeskNativeControlOperations;

class NativeControlOperations : public ::testing::Test {
protected:
    FakePlatform platform;
    FakeDesktop& desktop = platform.fakeDesktop;
    FakeElementHandle application = desktop.tree.applications.at(7);
    FakeElementHandle element = fakeElement();

    void SetUp() override { platform.fakeConsent.processTrusted = true; }
    void focus() { application->with("AXFocusedUIElement", elementValue(element)); }
    /// Makes the element one that only the search finds, in a window.
    FakeElementHandle hide() {
        auto window = fakeElement();
        window->withText("AXTitle", "Letter").with("AXChildren", elementsValue({element}));
        application->with("AXMainWindow", elementValue(window));
        return window;
    }
    CapabilityFocusedElementResponse focused() { return runTask(focusedElement(platform)); }
    CapabilityControlResponse set(const std::string& text) { return runTask(setFocusedValue(platform, text)); }
    /// Runs "Mail" behind the editor.
    RunningApplication runsInTheBackground() {
        desktop.applications.all = {
            *desktop.applications.front,
            {.processIdentifier = 9, .bundleIdentifier = "org.example.mail", .localizedName = "Mail"}};
        return desktop.applications.all.back();
    }
    std::chrono::nanoseconds started = platform.fakeMonotonicClock.time;
    std::chrono::nanoseconds elapsed() const { return platform.fakeMonotonicClock.time - started; }
    static CapabilityControlResponse emptyResponse(CapabilityControlAction action) {
        CapabilityControlResponse response;
        response.brokerPath = "/Applications/Vesk.app/Contents/Helpers/VeskCapabilityBroker";
        response.bundlePath = "/Applications/Vesk.app";
        response.action = action;
        return response;
    }
    std::string focusFailure() {
        return controlFailureOf([&] { focused(); });
    }
    std::string setFailure(const std::string& text) {
        return controlFailureOf([&] { set(text); });
    }
};

TEST_F(NativeControlOperations, TheActiveAppIsTold) {
    platform.fakeConsent.processTrusted = false;
    const auto response = runTask(activeApp(platform));
    EXPECT_EQ(response.brokerPath, "/Applications/Vesk.app/Contents/Helpers/VeskCapabilityBroker");
    EXPECT_EQ(response.bundlePath, "/Applications/Vesk.app");
    EXPECT_EQ(response.appName, "Editor");
    EXPECT_EQ(response.bundleIdentifier, "org.example.editor");
    EXPECT_EQ(response.processIdentifier, 7);
    EXPECT_EQ(response.detail, "Reported the current frontmost macOS application.");
}

TEST_F(NativeControlOperations, NoActiveAppIsAnAnswerToo) {
    desktop.applications.front.reset();
    const auto response = runTask(activeApp(platform));
    EXPECT_EQ(response.processIdentifier, std::nullopt);
    EXPECT_EQ(response.detail, "No frontmost macOS application was reported.");
}

TEST_F(NativeControlOperations, AnAppWithoutANameIsReportedWithTheRest) {
    desktop.applications.front->localizedName.reset();
    const auto response = runTask(activeApp(platform));
    EXPECT_EQ(response.bundleIdentifier, "org.example.editor");
    EXPECT_EQ(response.processIdentifier, 7);
    EXPECT_EQ(response.detail, "No frontmost macOS application was reported.");
}

/// Where nobody is logged in, whatever looks at the desktop fails.
class WithoutASession : public FakePlatform {
public:
    Desktop& desktop() override { throw ErrorRecord("test", 1, "no session"); }
};

TEST(NativeControlOperationsWithoutASession, WithoutConsentNothingIsLookedAt) {
    WithoutASession platform;
    const auto left = CapabilityMouseButton::left;
    const std::pair<const char*, std::function<void()>> operations[] = {
        {"focusedElement", [&] { runTask(focusedElement(platform)); }},
        {"setFocusedValue", [&] { runTask(setFocusedValue(platform, "")); }},
        {"click", [&] { runTask(click(platform, 0.5, 0.5, left)); }},
        {"typeText", [&] { runTask(typeText(platform, "")); }},
        {"pressKey", [&] { runTask(pressKey(platform, "none", {})); }},
    };
    for (const auto& [name, operation] : operations)
        EXPECT_EQ(controlFailureOf(operation), "85 Accessibility control has not been granted to Vesk.") << name;
    EXPECT_TRUE(platform.fakeConsent.requests.empty());
}

TEST(NativeControlOperationsWithoutASession, ArgumentsAreCheckedFirst) {
    WithoutASession platform;
    platform.fakeConsent.processTrusted = true;
    const std::pair<std::string, std::function<void()>> operations[] = {
        {"82 Cannot set an empty string.", [&] { runTask(setFocusedValue(platform, "")); }},
        {"82 Cannot type an empty string.", [&] { runTask(typeText(platform, "")); }},
        {"89 App target cannot be empty.", [&] { runTask(activateApp(platform, " \n\u00a0")); }},
        {"64 Invalid key. Use one of: return, tab, escape, space, delete, left, right, up, down, or `enter` as an "
         "alias "
         "for `return`",
         [&] { runTask(pressKey(platform, "Return", {})); }},
    };
    for (const auto& [failure, operation] : operations) EXPECT_EQ(controlFailureOf(operation), failure);
}

TEST_F(NativeControlOperations, WithoutAnApplicationThereIsNoFocus) {
    desktop.applications.front.reset();
    EXPECT_EQ(focusFailure(), "92 No frontmost macOS application was available.");
    EXPECT_EQ(setFailure("a"), "92 No frontmost macOS application was available.");
}

TEST_F(NativeControlOperations, WithoutACandidateThereIsNoFocus) {
    EXPECT_EQ(focusFailure(), "91 Unable to read the focused UI element for the frontmost app.");
    EXPECT_EQ(setFailure("a"), "91 Unable to read the focused UI element for the frontmost app.");
}

TEST_F(NativeControlOperations, EveryAttributeIsReported) {
    const auto window = fakeElement();
    window->withText("AXTitle", "Letter");
    for (const char* name : {"AXSubrole", "AXRoleDescription", "AXIdentifier", "AXDescription", "AXTitle"})
        element->withText(name, name);
    element->withText("AXRole", "AXTextArea").withText("AXPlaceholderValue", "p").withText("AXSelectedText", " s\nt ");
    element->with("AXValue", {std::int64_t{42}}).withSettable("AXValue").withFlag("AXFocused", false);
    element->with("AXPosition", {ScreenPoint{-1, 2}}).with("AXSize", {ScreenSize{3, 4}});
    element->with("AXWindow", elementValue(window));
    focus();
    CapabilityFocusedElementResponse expected;
    expected.brokerPath = "/Applications/Vesk.app/Contents/Helpers/VeskCapabilityBroker";
    expected.bundlePath = "/Applications/Vesk.app";
    expected.appName = "Editor";
    expected.bundleIdentifier = "org.example.editor";
    expected.processIdentifier = 7;
    expected.windowTitle = "Letter";
    expected.role = "AXTextArea";
    expected.subrole = "AXSubrole";
    expected.roleDescription = "AXRoleDescription";
    expected.identifier = "AXIdentifier";
    expected.elementDescription = "AXDescription";
    expected.title = "AXTitle";
    expected.placeholderValue = "p";
    expected.valuePreview = "42";
    expected.selectedTextPreview = "s t";
    expected.valueSettable = expected.editable = true;
    expected.focused = false;
    expected.frameX = -1;
    expected.frameY = 2;
    expected.frameWidth = 3;
    expected.frameHeight = 4;
    expected.detail = "Reported the currently focused editable element.";
    EXPECT_EQ(writeJson(toJson(focused())), writeJson(toJson(expected)));
}

TEST_F(NativeControlOperations, ADirectElementIsReportedAsItIsWithoutASearch) {
    hide()->with("AXChildren", elementsValue({fakeElement()}));
    focus();
    const auto response = focused();
    EXPECT_EQ(response.detail, "Reported the currently focused UI element.");
    EXPECT_EQ(response.role, std::nullopt);
    EXPECT_EQ(response.valueSettable, false);
    EXPECT_EQ(response.editable, false);
    EXPECT_EQ(response.focused, std::nullopt);
    EXPECT_EQ(response.windowTitle, "Letter") << "that of the application's window";
    EXPECT_EQ(desktop.tree.visited.size(), 3U) << "application, element, window";
}

TEST_F(NativeControlOperations, FrameFieldsAreIndependent) {
    focus();
    element->with("AXSize", {ScreenSize{3, 4}});
    EXPECT_EQ(focused().frameX, std::nullopt);
    EXPECT_EQ(focused().frameWidth, 3);
}

TEST_F(NativeControlOperations, WhetherAnElementIsEditableStartsFromWhatItSays) {
    struct Case {
        std::optional<bool> said;
        bool settable, looksSo, editable;
    };
    const Case cases[] = {
        {true, false, false, true}, {false, true, false, false}, {false, false, true, true},
        {{}, true, false, true},    {{}, false, false, false},   {{}, false, true, true},
    };
    for (const Case& expected : cases) {
        element = fakeElement();
        focus();
        if (expected.said) element->withFlag("AXEditable", *expected.said);
        if (expected.settable) element->withSettable("AXValue");
        if (expected.looksSo) element->withText("AXRole", "AXTextField");
        const auto response = focused();
        EXPECT_EQ(response.editable, expected.editable) << &expected - cases;
        EXPECT_EQ(response.detail, expected.editable || expected.settable
                                       ? "Reported the currently focused editable element."
                                       : "Reported the currently focused UI element.")
            << &expected - cases;
    }
}

TEST_F(NativeControlOperations, TheSearchFindsWhatTheApplicationDoesNotTell) {
    hide();
    element->withText("AXRole", "AXTextField");
    EXPECT_EQ(focused().detail, "Reported the most likely editable field after scanning the front window because the "
                                "app did not expose a direct focused element.");
    EXPECT_EQ(focused().windowTitle, "Letter");
    element->withText("AXRole", "AXButton").withFlag("AXFocused", true);
    EXPECT_EQ(focused().detail, "Reported the most likely focused UI element after scanning the front window because "
                                "the app did not expose a direct focused element.");
}

TEST_F(NativeControlOperations, WithoutAWindowTheSearchStartsAtTheApplication) {
    application->with("AXChildren", elementsValue({element}));
    element->withText("AXRole", "AXTextField");
    EXPECT_EQ(focused().role, "AXTextField");
    EXPECT_EQ(focused().windowTitle, std::nullopt);
}

TEST_F(NativeControlOperations, TheFocusedWindowComesBeforeTheMainOneAndThatBeforeAny) {
    focus();
    for (const char* attribute : {"AXWindow", "AXMainWindow", "AXFocusedWindow"}) {
        const auto window = fakeElement();
        window->withText("AXTitle", attribute);
        application->with(attribute, elementValue(window));
        EXPECT_EQ(focused().windowTitle, attribute);
    }
}

TEST_F(NativeControlOperations, AValueIsSet) {
    focus();
    element->withFlag("AXEditable", false).withSettable("AXValue");
    const auto response = set(" e\u0301\n");
    ASSERT_EQ(desktop.tree.set.size(), 1U);
    EXPECT_EQ(desktop.tree.set[0].first, element);
    EXPECT_EQ(desktop.tree.set[0].second, "AXValue= e\u0301\n");
    EXPECT_EQ(response.action, CapabilityControlAction::setValue);
    EXPECT_EQ(response.textLength, 3);
    EXPECT_EQ(response.bundlePath, "/Applications/Vesk.app");
    EXPECT_EQ(response.detail, "Updated the focused field value through macOS Accessibility.");
}

TEST_F(NativeControlOperations, AValueIsSetWhereTheSearchFindsAField) {
    hide();
    element->withText("AXRole", "AXTextField").withSettable("AXValue");
    EXPECT_EQ(set("a").detail, "Updated the most likely editable field through macOS Accessibility after scanning the "
                               "front window.");
}

TEST_F(NativeControlOperations, WhatCannotBeSetIsRefused) {
    focus();
    EXPECT_EQ(setFailure(""), "82 Cannot set an empty string.");
    EXPECT_EQ(setFailure("a"), "93 The currently focused UI element is not editable.");
    element->withFlag("AXEditable", true);
    EXPECT_EQ(setFailure("a"), "94 The focused UI element does not support direct value setting.");
    element->withFlag("AXEditable", false).withText("AXRole", "AXTextField");
    EXPECT_EQ(setFailure("a"), "94 The focused UI element does not support direct value setting.");
    element->withSettable("AXValue");
    desktop.tree.accepts = false;
    EXPECT_EQ(setFailure("a"), "95 macOS did not accept a direct value update for the focused element.");
}

// ---- Applications

TEST_F(NativeControlOperations, AnActivatedAppIsReportedUnderTheTrimmedTarget) {
    platform.fakeConsent.processTrusted = false;
    runsInTheBackground();
    desktop.applications.whenActivated = [&](const RunningApplication& mail) { desktop.applications.front = mail; };
    CapabilityAppActivationResponse expected;
    expected.brokerPath = "/Applications/Vesk.app/Contents/Helpers/VeskCapabilityBroker";
    expected.bundlePath = "/Applications/Vesk.app";
    expected.requestedApp = "mAiL";
    expected.activated = true;
    expected.appName = "Mail";
    expected.bundleIdentifier = "org.example.mail";
    expected.processIdentifier = 9;
    expected.detail = "Activated the requested macOS application.";
    EXPECT_EQ(runTask(activateApp(platform, "\t mAiL ")), expected);
    EXPECT_EQ(desktop.applications.activated.size(), 1U);
    EXPECT_TRUE(desktop.applications.opened.empty());
}

TEST_F(NativeControlOperations, AnAppThatIsNotInFrontInTimeIsOpenedAgain) {
    const RunningApplication mail = runsInTheBackground();
    desktop.applications.accepts = false;
    desktop.applications.whenOpened = [&] {
        EXPECT_EQ(elapsed(), std::chrono::milliseconds(1200));
        platform.fakeSleeper.whenAwake = [&] { desktop.applications.front = mail; };
    };
    const auto response = runTask(activateApp(platform, "mail"));
    EXPECT_TRUE(response.activated);
    EXPECT_EQ(response.detail, "Activated the requested macOS application.");
    EXPECT_EQ(desktop.applications.opened, (std::vector<std::vector<std::string>>{{"-b", "org.example.mail"}}));
}

TEST_F(NativeControlOperations, AnAppThatNeverComesIsAnAnswerToo) {
    struct Case {
        bool accepts;
        int status;
        std::chrono::milliseconds waited;
        const char* detail;
    };
    const char* accepted = "macOS accepted the activation request, but the target app never became frontmost.";
    const char* refused = "macOS did not switch the frontmost app to the requested application.";
    const Case cases[] = {{true, 0, std::chrono::milliseconds(2700), accepted},
                          {false, 0, std::chrono::milliseconds(2700), refused},
                          {true, 1, std::chrono::milliseconds(1200), accepted},
                          {false, 1, std::chrono::milliseconds(1200), refused}};
    runsInTheBackground();
    for (const Case& expected : cases) {
        started = platform.fakeMonotonicClock.time;
        desktop.applications.accepts = expected.accepts;
        desktop.applications.openerStatus = expected.status;
        const auto response = runTask(activateApp(platform, "mail"));
        EXPECT_FALSE(response.activated);
        EXPECT_EQ(response.detail, expected.detail);
        EXPECT_EQ(elapsed(), expected.waited) << expected.detail << expected.status;
    }
}

TEST_F(NativeControlOperations, AnAppWithoutAnIdentifierIsOpenedByItsName) {
    const RunningApplication mail = runsInTheBackground();
    desktop.applications.all = {
        {.processIdentifier = 9, .bundleIdentifier = std::nullopt, .localizedName = mail.localizedName}};
    runTask(activateApp(platform, "mail"));
    EXPECT_EQ(desktop.applications.opened, (std::vector<std::vector<std::string>>{{"-a", "Mail"}}));
}

TEST_F(NativeControlOperations, AnOpenerThatCannotBeStartedFailsTheActivation) {
    runsInTheBackground();
    desktop.applications.whenOpened = [] { throw PosixError(ENOENT, "/usr/bin/open"); };
    EXPECT_THROW(runTask(activateApp(platform, "mail")), PosixError);
}

TEST_F(NativeControlOperations, AnAppThatDoesNotRunIsNotActivated) {
    EXPECT_EQ(controlFailureOf([&] { runTask(activateApp(platform, " Post ")); }),
              "90 No running macOS application matched `Post`. Use the visible app name or bundle id.");
    EXPECT_TRUE(desktop.applications.activated.empty());
}

// ---- Input

TEST_F(NativeControlOperations, AClickGoesToItsPartOfTheDesktop) {
    desktop.screens.all = {{.identifier = 1, .place = {0, 0, 1440, 900}},
                           {.identifier = 2, .place = {-1280, -100, 1280, 1024}}};
    struct Case {
        double x, y, screenX, screenY;
        CapabilityMouseButton button;
        MouseEventType down;
    };
    const Case cases[] = {
        {0, 0, -1280, -100, CapabilityMouseButton::left, MouseEventType::leftDown},
        {1, 1, 1440, 924, CapabilityMouseButton::right, MouseEventType::rightDown},
        {0.3, 0.7, -1280 + 0.3 * 2720, -100 + 0.7 * 1024, CapabilityMouseButton::left, MouseEventType::leftDown},
    };
    for (const Case& expected : cases) {
        desktop.events.posted.clear();
        const auto response = runTask(click(platform, expected.x, expected.y, expected.button));
        CapabilityControlResponse whole = emptyResponse(CapabilityControlAction::click);
        whole.detail = "Clicked the current screen through macOS Accessibility control.";
        whole.normalizedX = expected.x;
        whole.normalizedY = expected.y;
        whole.screenX = expected.screenX;
        whole.screenY = expected.screenY;
        whole.button = expected.button;
        EXPECT_EQ(response, whole);
        ASSERT_EQ(desktop.events.posted.size(), 3U);
        const auto down = std::get<MouseEvent>(desktop.events.posted[1]);
        EXPECT_EQ(down.type, expected.down);
        EXPECT_EQ(down.point, (ScreenPoint{expected.screenX, expected.screenY}));
    }
}

TEST_F(NativeControlOperations, WithoutADisplayNothingIsClicked) {
    EXPECT_EQ(controlFailureOf([&] { runTask(click(platform, 0, 0, CapabilityMouseButton::left)); }),
              "88 Desktop bounds are unavailable for computer control.");
    EXPECT_EQ(desktop.events.created, 0U);
}

TEST_F(NativeControlOperations, TypedTextIsCountedInCharacters) {
    const auto response = runTask(typeText(platform, "\U0001F600"));
    CapabilityControlResponse expected = emptyResponse(CapabilityControlAction::type);
    expected.detail = "Typed text through macOS Accessibility control.";
    expected.textLength = 1;
    EXPECT_EQ(response, expected);
    EXPECT_EQ(desktop.events.posted.size(), 4U) << "two units";
}

TEST_F(NativeControlOperations, WhiteSpaceIsTextToo) {
    EXPECT_EQ(runTask(typeText(platform, " \n")).textLength, 2);
    EXPECT_EQ(desktop.events.posted.size(), 4U);
}

TEST_F(NativeControlOperations, AKeyIsPressedWithItsModifiers) {
    using enum CapabilityKeyModifier;
    CapabilityControlResponse expected = emptyResponse(CapabilityControlAction::key);
    expected.detail = "Pressed a keyboard key with modifiers through macOS Accessibility control.";
    expected.key = "left";
    expected.modifiers = std::vector{shift, command, shift};
    EXPECT_EQ(runTask(pressKey(platform, "left", {shift, command, shift})), expected);
    ASSERT_EQ(desktop.events.posted.size(), 2U);
    EXPECT_EQ(std::get<KeyboardEvent>(desktop.events.posted[0]),
              (KeyboardEvent{.keyCode = 123, .keyDown = true, .flags = 0x120000}));
}

TEST_F(NativeControlOperations, EnterIsReportedAsReturnAndNoModifiersAsAnEmptyList) {
    CapabilityControlResponse expected = emptyResponse(CapabilityControlAction::key);
    expected.detail = "Pressed a keyboard key through macOS Accessibility control.";
    expected.key = "return";
    expected.modifiers.emplace();
    EXPECT_EQ(runTask(pressKey(platform, "enter", {})), expected);
    EXPECT_EQ(std::get<KeyboardEvent>(desktop.events.posted[0]), (KeyboardEvent{.keyCode = 36, .keyDown = true}));
}

TEST_F(NativeControlOperations, EventsThatCannotBeMadeFail) {
    desktop.screens.all = {{.identifier = 1, .place = {0, 0, 10, 10}}};
    desktop.events.creatable = 0;
    EXPECT_EQ(controlFailureOf([&] { runTask(click(platform, 0, 0, CapabilityMouseButton::left)); }),
              "81 Unable to synthesize mouse events for computer control.");
    EXPECT_EQ(controlFailureOf([&] { runTask(typeText(platform, "a")); }),
              "83 Unable to synthesize keyboard events for text entry.");
    EXPECT_EQ(controlFailureOf([&] { runTask(pressKey(platform, "tab", {})); }),
              "84 Unable to synthesize keyboard shortcut events.");
}

} // namespace
} // namespace vesk::test
