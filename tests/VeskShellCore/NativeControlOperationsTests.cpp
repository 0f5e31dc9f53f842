#include "VeskShellCore/NativeControlOperations.hpp"

#include "VeskShellCore/NativeControlError.hpp"
#include "tests/fakes/FakeDesktop.hpp"
#include "tests/fakes/FakePlatform.hpp"
#include "tests/fakes/RunTask.hpp"

#include <gtest/gtest.h>

namespace vesk::test {
namespace {

using namespace VeskNativeControlOperations;

class NativeControlOperations : public ::testing::Test {
protected:
    FakePlatform platform;
    FakeDesktop desktop;
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
    CapabilityFocusedElementResponse focused() { return runTask(focusedElement(platform, desktop)); }
    CapabilityControlResponse set(const std::string& text) { return runTask(setFocusedValue(platform, desktop, text)); }
    /// "CODE TEXT" of the NativeControlError that `work` throws.
    template <class Work> static std::string failureOf(Work work) {
        try {
            work();
        } catch (const NativeControlError& error) {
            EXPECT_EQ(error.domain(), "VeskCapabilityBroker");
            return std::to_string(error.code()) + " " + error.description();
        }
        return "no failure";
    }
    std::string focusFailure() {
        return failureOf([&] { focused(); });
    }
    std::string setFailure(const std::string& text) {
        return failureOf([&] { set(text); });
    }
};

TEST_F(NativeControlOperations, TheActiveAppIsTold) {
    platform.fakeConsent.processTrusted = false;
    const auto response = runTask(activeApp(platform, desktop));
    EXPECT_EQ(response.brokerPath, "/Applications/Vesk.app/Contents/Helpers/VeskCapabilityBroker");
    EXPECT_EQ(response.bundlePath, "/Applications/Vesk.app");
    EXPECT_EQ(response.appName, "Editor");
    EXPECT_EQ(response.bundleIdentifier, "org.example.editor");
    EXPECT_EQ(response.processIdentifier, 7);
    EXPECT_EQ(response.detail, "Reported the current frontmost macOS application.");
}

TEST_F(NativeControlOperations, NoActiveAppIsAnAnswerToo) {
    desktop.applications.front.reset();
    const auto response = runTask(activeApp(platform, desktop));
    EXPECT_EQ(response.processIdentifier, std::nullopt);
    EXPECT_EQ(response.detail, "No frontmost macOS application was reported.");
}

TEST_F(NativeControlOperations, AnAppWithoutANameIsReportedWithTheRest) {
    desktop.applications.front->localizedName.reset();
    const auto response = runTask(activeApp(platform, desktop));
    EXPECT_EQ(response.bundleIdentifier, "org.example.editor");
    EXPECT_EQ(response.processIdentifier, 7);
    EXPECT_EQ(response.detail, "No frontmost macOS application was reported.");
}

TEST_F(NativeControlOperations, WithoutConsentNothingIsLookedAt) {
    platform.fakeConsent.processTrusted = false;
    const std::string refused = "85 Accessibility control has not been granted to Vesk.";
    EXPECT_EQ(focusFailure(), refused);
    EXPECT_EQ(setFailure(""), refused);
    EXPECT_TRUE(platform.fakeConsent.requests.empty());
    EXPECT_EQ(desktop.applications.asked, 0);
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

} // namespace
} // namespace vesk::test
