#include "VeskPlatform/Linux/Accessibility/AccessibilityBus.hpp"
#include "VeskPlatform/Linux/ProcessEnvironment.hpp"
#include "VeskShellCore/AccessibilityReading.hpp"
#include "VeskShellCore/ElementSearch.hpp"
#include "tests/fakes/RunTask.hpp"
#include "tests/support/AccessibleDesktop.hpp"

#include <gmock/gmock.h>

namespace vesk::test {
namespace {

using ::testing::AllOf;
using ::testing::Ge;
using ::testing::Le;

/// Real programs on one desktop: starting one takes longer than a test does.
class AccessibleProgramsTests : public ::testing::Test {
protected:
    static void SetUpTestSuite() { desktop = std::make_unique<AccessibleDesktop>(); }
    static void TearDownTestSuite() { desktop.reset(); }
    void TearDown() override {
        for (const pid_t program : programs) desktop->desktop().kill(program);
    }

    static inline std::unique_ptr<AccessibleDesktop> desktop;
    std::vector<pid_t> programs;
    ProcessEnvironment environment;
    std::unique_ptr<AccessibilityTree> tree = openAccessibilityTree({environment, "", {}});

    pid_t launch(const std::string& program, const std::string& package, std::vector<std::string> arguments = {}) {
        return programs.emplace_back(desktop->launch(program, package, std::move(arguments)));
    }

    AccessibilityAnswer read(const AccessibilityElementHandle& element, std::vector<std::string> attributes) {
        return runTask(tree->read({element}, {std::move(attributes), {"AXValue"}})).at(0);
    }
    AccessibilityAnswer describe(const AccessibilityElementHandle& element) {
        return read(element, {"AXPosition", "AXSize", "AXWindow", "AXRole", "AXSubrole", "AXIdentifier", "AXTitle",
                              "AXPlaceholderValue", "AXValue", "AXSelectedText", "AXRoleDescription", "AXEditable",
                              "AXFocused"});
    }
    AccessibilityElementHandle attribute(const AccessibilityElementHandle& element, const std::string& name) {
        return copyElementAttribute(read(element, {name}), name).value_or(nullptr);
    }

    /// What the application itself says has the focus; null where it does not.
    AccessibilityElementHandle direct(pid_t program) {
        return attribute(runTask(tree->applicationElement(program)), "AXFocusedUIElement");
    }
    AccessibilityElementHandle window(pid_t program) {
        const auto root = runTask(tree->applicationElement(program));
        const auto focused = attribute(root, "AXFocusedWindow");
        return focused ? focused : attribute(root, "AXMainWindow");
    }
    /// What the walk through the window finds.
    AccessibilityElementHandle searched(pid_t program) {
        const auto start = window(program);
        return start ? runTask(findBestInspectableDescendant(*tree, start)).value_or(nullptr) : nullptr;
    }
    static std::string text(const AccessibilityAnswer& answer, const std::string& name) {
        return copyStringAttribute(answer, name).value_or("none");
    }

    /// Waits until the focus says that an attribute has this value.
    AccessibilityElementHandle awaitFocus(pid_t program, const std::string& name, const std::string& value) {
        AccessibilityElementHandle found;
        eventually(value + " in focus", [&] {
            found = direct(program);
            return found && text(read(found, {name}), name) == value;
        });
        return found;
    }

    void expectInsideWindow(const AccessibilityElementHandle& element) {
        const AccessibilityAnswer inner = describe(element), outer = describe(attribute(element, "AXWindow"));
        const auto at = copyCGPointAttribute(inner, "AXPosition"), origin = copyCGPointAttribute(outer, "AXPosition");
        const auto size = copyCGSizeAttribute(inner, "AXSize"), room = copyCGSizeAttribute(outer, "AXSize");
        ASSERT_TRUE(at && size && origin && room);
        EXPECT_THAT(at->x, AllOf(Ge(origin->x), Le(origin->x + room->width - size->width)));
        EXPECT_THAT(at->y, AllOf(Ge(origin->y), Le(origin->y + room->height - size->height)));
        EXPECT_GT(size->width, 20);
        EXPECT_GT(size->height, 16);
    }
    void expectReplaced(const AccessibilityElementHandle& element, const std::string& value) {
        EXPECT_TRUE(runTask(tree->setValue(element, "AXValue", value)));
        EXPECT_EQ(text(describe(element), "AXValue"), value);
    }
};

TEST_F(AccessibleProgramsTests, AGtkEditorTellsItsFocus) {
    const pid_t program = launch("mousepad", "mousepad", {"--disable-server"});
    const auto field = awaitFocus(program, "AXRole", "AXTextArea");
    const AccessibilityAnswer answer = describe(field);
    EXPECT_EQ(copyBoolAttribute(answer, "AXEditable"), true);
    EXPECT_EQ(copyBoolAttribute(answer, "AXFocused"), true);
    EXPECT_EQ(text(answer, "AXValue"), "");
    EXPECT_EQ(text(answer, "AXRoleDescription"), "text");
    EXPECT_TRUE(isAttributeSettable(answer, "AXValue"));
    EXPECT_EQ(text(describe(attribute(field, "AXWindow")), "AXTitle"), "Untitled 1 - Mousepad");
    EXPECT_EQ(text(describe(attribute(field, "AXWindow")), "AXSubrole"), "AXStandardWindow");
    expectInsideWindow(field);
    expectReplaced(field, "Grüße 😀\nsecond line");
    desktop->press({"ctrl+a"});
    eventually("the selection", [&] { return text(describe(field), "AXSelectedText") == "Grüße 😀\nsecond line"; });
    EXPECT_EQ(searched(program), field);
}

TEST_F(AccessibleProgramsTests, AQtEditorIsSearched) {
    const pid_t program = launch("featherpad", "featherpad", {"--standalone"});
    AccessibilityElementHandle field;
    eventually("the focused text area", [&] {
        field = searched(program);
        return field && copyBoolAttribute(describe(field), "AXFocused") == true;
    });
    const AccessibilityAnswer answer = describe(field);
    EXPECT_EQ(direct(program), nullptr);
    EXPECT_EQ(text(answer, "AXRole"), "AXTextArea");
    EXPECT_EQ(copyBoolAttribute(answer, "AXEditable"), true);
    EXPECT_TRUE(isAttributeSettable(answer, "AXValue"));
    expectInsideWindow(field);
    expectReplaced(field, "Grüße 😀\nsecond line");
}

TEST_F(AccessibleProgramsTests, ATerminalWithoutElementsHasNothing) {
    const pid_t program = launch("xterm", "xterm", {"-title", "Terminal"});
    desktop->desktop().run("xdotool", {"search", "--sync", "--onlyvisible", "--name", "^Terminal$"});
    const auto root = runTask(tree->applicationElement(program));
    EXPECT_EQ(window(program), nullptr);
    EXPECT_FALSE(runTask(findBestInspectableDescendant(*tree, root)));
}

TEST_F(AccessibleProgramsTests, APasswordIsNotTold) {
    const pid_t program = launch("zenity", "zenity", {"--password", "--title=Secret"});
    const auto field = awaitFocus(program, "AXSubrole", "AXSecureTextField");
    EXPECT_TRUE(runTask(tree->setValue(field, "AXValue", "hidden")));
    desktop->press({"ctrl+a"});
    const AccessibilityAnswer answer = describe(field);
    EXPECT_EQ(text(answer, "AXRole"), "AXTextField");
    EXPECT_EQ(text(answer, "AXValue"), "none");
    EXPECT_EQ(text(answer, "AXSelectedText"), "none");
    EXPECT_TRUE(isAttributeSettable(answer, "AXValue"));
    EXPECT_EQ(text(describe(attribute(field, "AXWindow")), "AXSubrole"), "AXDialog");
}

TEST_F(AccessibleProgramsTests, ASliderIsSetToNumbers) {
    const pid_t program = launch("zenity", "zenity", {"--scale", "--value=30"});
    const auto slider = awaitFocus(program, "AXRole", "AXSlider");
    EXPECT_EQ(text(describe(slider), "AXValue"), "30");
    EXPECT_TRUE(isAttributeSettable(describe(slider), "AXValue"));
    expectReplaced(slider, "72");
    EXPECT_FALSE(runTask(tree->setValue(slider, "AXValue", "many")));
    EXPECT_EQ(text(describe(slider), "AXValue"), "72");
}

/// A browser tells all of its form, but takes no values.
TEST_F(AccessibleProgramsTests, AFormInABrowserTellsItsFocus) {
    const std::string page = desktop->write("form.html", R"(<!doctype html><meta charset=utf-8><title>Form</title>
<label>Customer <input id=customer placeholder="Name of the customer" value="Ada" autofocus></label>
<p><input id=find type=search placeholder=Find>
<p><input id=secret type=password value=hidden>
<p><textarea id=notes>first line
second line</textarea>
<p><input id=amount type=range min=0 max=10 value=3>
<p><input id=agreed type=checkbox checked>
<p><input id=fixed readonly value=fixed>
<p><div id=rich contenteditable>Rich text</div>
)");
    const pid_t program =
        launch("chromium", "chromium",
               {"--force-renderer-accessibility", "--no-first-run", "--disable-gpu", "--disable-background-networking",
                "--user-data-dir=" + desktop->home() + "/browser", "--app=file://" + page});
    const struct {
        const char *identifier, *role, *subrole, *value, *placeholder;
        std::optional<bool> editable;
    } fields[] = {
        {"customer", "AXTextField", "none", "Ada", "Name of the customer", true},
        {"find", "AXTextField", "AXSearchField", "", "Find", true},
        {"secret", "AXTextField", "AXSecureTextField", "none", "none", true},
        {"notes", "AXTextArea", "none", "first line\nsecond line", "none", true},
        {"none", "AXSlider", "none", "3", "none", std::nullopt},
        {"none", "AXCheckBox", "none", "1", "none", std::nullopt},
        {"fixed", "AXTextField", "none", "fixed", "none", false},
        {"rich", "AXTextArea", "none", "Rich text", "none", true},
    };
    const auto first = awaitFocus(program, "AXIdentifier", "customer");
    expectInsideWindow(first);
    EXPECT_EQ(text(describe(first), "AXTitle"), "Customer");
    EXPECT_EQ(text(describe(attribute(first, "AXWindow")), "AXTitle"), "Form");
    EXPECT_FALSE(isAttributeSettable(describe(first), "AXValue"));
    EXPECT_FALSE(runTask(tree->setValue(first, "AXValue", "Grace")));
    for (const auto& each : fields) {
        AccessibilityAnswer answer;
        eventually(std::string(each.role) + " " + each.identifier, [&] {
            const auto field = direct(program);
            if (field) answer = describe(field);
            return text(answer, "AXRole") == each.role && text(answer, "AXIdentifier") == each.identifier;
        });
        EXPECT_EQ(text(answer, "AXSubrole"), each.subrole) << each.identifier;
        EXPECT_EQ(text(answer, "AXValue"), each.value) << each.identifier;
        EXPECT_EQ(text(answer, "AXPlaceholderValue"), each.placeholder) << each.identifier;
        EXPECT_EQ(copyBoolAttribute(answer, "AXEditable"), each.editable) << each.identifier;
        EXPECT_EQ(copyBoolAttribute(answer, "AXFocused"), true) << each.identifier;
        desktop->press({"Tab"});
    }
}

} // namespace
} // namespace vesk::test
