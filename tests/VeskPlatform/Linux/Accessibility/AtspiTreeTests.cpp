#include "VeskPlatform/Linux/Accessibility/AtspiTree.hpp"

#include "VeskPlatform/Linux/Accessibility/AtspiNames.hpp"
#include "VeskShellCore/ElementSearch.hpp"
#include "tests/VeskPlatform/Linux/Accessibility/AccessibleWorld.hpp"

#include <gmock/gmock.h>

namespace vesk::test {
namespace {

using std::chrono::milliseconds;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

class AtspiTreeTests : public AccessibleWorld {
protected:
    std::vector<std::string> pathsOf(const std::vector<AccessibilityElementHandle>& handles) {
        std::vector<std::string> paths;
        for (const auto& handle : handles) paths.push_back(pathOf(handle));
        return paths;
    }
    static AccessibilityQuery everything() {
        return {{"AXRole", "AXTitle", "AXValue", "AXSize", "AXChildren", "AXFocusedUIElement", "AXFocusedWindow"},
                {"AXValue"}};
    }
};

TEST_F(AtspiTreeTests, AnApplicationIsFoundByItsProcess) {
    application.objects[root()].name = "Example";
    const AccessibilityAnswer answer = read(applicationElement(), {"AXTitle", "AXRole"});
    EXPECT_EQ(valueIn<std::string>(answer, "AXTitle"), "Example");
    EXPECT_EQ(valueIn<std::string>(answer, "AXRole"), "AXApplication");
}

TEST_F(AtspiTreeTests, AProcessWithoutElementsHasARootWithNothing) {
    const auto other = applicationElement(1);
    ASSERT_NE(other, nullptr);
    const AccessibilityAnswer answer = runTask(tree().read({other}, everything())).at(0);
    EXPECT_TRUE(answer.values.empty());
    EXPECT_TRUE(answer.settable.empty());
    EXPECT_FALSE(runTask(tree().setValue(other, "AXValue", "text")));
    EXPECT_NE(other, applicationElement(2)) << "two processes without elements are not one";
    EXPECT_EQ(other, applicationElement(1));
}

TEST_F(AtspiTreeTests, OfSeveralConnectionsOfAProcessTheOneWithWindowsCounts) {
    FakeAccessibleApplication helper("org.example.Helper");
    helper.serveAt(bus.address());
    registry.objects[root()].children.emplace_back(helper.name(), root());
    addElement(ATSPI_ROLE_ENTRY);
    EXPECT_EQ(pathsOf(elements(applicationElement())), std::vector{path("window")});
}

TEST_F(AtspiTreeTests, OfSeveralConnectionsWithoutWindowsTheFirstCounts) {
    FakeAccessibleApplication helper("org.example.Helper");
    helper.objects[root()].name = "Helper";
    helper.serveAt(bus.address());
    registry.objects[root()].children.emplace_back(helper.name(), root());
    EXPECT_EQ(valueIn<std::string>(read(applicationElement(), {"AXTitle"}), "AXTitle"), "Helper");
}

TEST_F(AtspiTreeTests, AnElementHasOneHandleWhileSomebodyHoldsIt) {
    addElement(ATSPI_ROLE_ENTRY);
    const auto app = applicationElement();
    const auto window = elements(app).at(0);
    EXPECT_EQ(elements(app).at(0), window);
    EXPECT_EQ(handleIn(read(app, {"AXFocusedWindow"}), "AXFocusedWindow"), window);
    EXPECT_EQ(applicationElement(), app);
}

TEST_F(AtspiTreeTests, ElementsOfManyReadingsAreNotKept) {
    auto& window = application.add(root(), path("window"), ATSPI_ROLE_FRAME);
    for (int i = 0; i < 3000; ++i) window.children.emplace_back(application.name(), path(std::to_string(i)));
    const auto app = applicationElement();
    const auto held = elements(app).at(0);
    const std::weak_ptr<const AccessibilityElement> released = elements(held).at(5);
    EXPECT_TRUE(released.expired());
    const auto again = elements(held);
    EXPECT_EQ(again.size(), 3000U);
    EXPECT_EQ(elements(app).at(0), held);
    EXPECT_EQ(elements(held), again);
}

TEST_F(AtspiTreeTests, AnswersComeInTheOrderOfTheElements) {
    application.add(root(), path("one"), ATSPI_ROLE_FRAME).name = "one";
    application.add(root(), path("two"), ATSPI_ROLE_FRAME).name = "two";
    const auto app = applicationElement();
    const auto windows = elements(app), nobody = std::vector{applicationElement(1)};
    const auto answers = runTask(tree().read({windows[1], nobody[0], windows[0], windows[1]}, {{"AXTitle"}, {}}));
    ASSERT_EQ(answers.size(), 4U);
    EXPECT_EQ(valueIn<std::string>(answers[0], "AXTitle"), "two");
    EXPECT_TRUE(answers[1].values.empty());
    EXPECT_EQ(valueIn<std::string>(answers[2], "AXTitle"), "one");
    EXPECT_EQ(valueIn<std::string>(answers[3], "AXTitle"), "two");
}

TEST_F(AtspiTreeTests, NothingToReadHasNoAnswers) { EXPECT_TRUE(runTask(tree().read({}, everything())).empty()); }

TEST_F(AtspiTreeTests, TheActiveWindowIsTheFocusedOne) {
    application.add(root(), path("hidden"), ATSPI_ROLE_FRAME);
    application.add(root(), path("shown"), ATSPI_ROLE_FRAME, {ATSPI_STATE_SHOWING});
    application.add(root(), path("active"), ATSPI_ROLE_DIALOG, {ATSPI_STATE_SHOWING, ATSPI_STATE_ACTIVE});
    const AccessibilityAnswer answer = read(applicationElement(), {"AXFocusedWindow", "AXMainWindow", "AXWindow"});
    EXPECT_EQ(pathOf(handleIn(answer, "AXFocusedWindow")), path("active"));
    EXPECT_EQ(pathOf(handleIn(answer, "AXMainWindow")), path("shown"));
    EXPECT_EQ(handleIn(answer, "AXWindow"), nullptr);
}

TEST_F(AtspiTreeTests, AnApplicationMayHaveNoWindow) {
    EXPECT_THAT(read(applicationElement(), {"AXFocusedWindow", "AXMainWindow"}).values, IsEmpty());
}

TEST_F(AtspiTreeTests, WindowsAndWhatIsInThemHaveNoWindowsOfAnApplication) {
    addElement(ATSPI_ROLE_ENTRY).children.emplace_back(application.name(), path("part"));
    application.objects[path("part")].states = {ATSPI_STATE_ACTIVE, ATSPI_STATE_SHOWING};
    const auto found = element();
    const AccessibilityAnswer answer =
        read(found, {"AXFocusedWindow", "AXMainWindow", "AXWindow", "AXFocusedUIElement"});
    EXPECT_EQ(pathOf(handleIn(answer, "AXWindow")), path("window"));
    EXPECT_EQ(answer.values.size(), 1U);
    EXPECT_EQ(pathOf(handleIn(read(elements(found).at(0), {"AXWindow"}), "AXWindow")), path("window"));
}

TEST_F(AtspiTreeTests, TheFocusIsSearchedInTheActiveWindowOnly) {
    addElement(ATSPI_ROLE_ENTRY);
    application.objects[path("window")].focused = {{application.name(), path("element")}};
    application.add(root(), path("background"), ATSPI_ROLE_FRAME, {ATSPI_STATE_SHOWING}).focused = {
        {application.name(), path("other")}};
    const auto focus = handleIn(read(applicationElement(), {"AXFocusedUIElement"}), "AXFocusedUIElement");
    EXPECT_EQ(pathOf(focus), path("element"));
    EXPECT_EQ(pathOf(handleIn(read(focus, {"AXWindow"}), "AXWindow")), path("window"));
    EXPECT_EQ(application.countOf("GetMatches"), 1U);
}

TEST_F(AtspiTreeTests, WithoutAnActiveWindowTheFirstFocusCounts) {
    application.add(root(), path("one"), ATSPI_ROLE_FRAME).focused.emplace();
    application.add(root(), path("two"), ATSPI_ROLE_FRAME).focused = {{application.name(), path("second")}};
    application.add(root(), path("three"), ATSPI_ROLE_FRAME).focused = {{application.name(), path("third")}};
    EXPECT_EQ(pathOf(handleIn(read(applicationElement(), {"AXFocusedUIElement"}), "AXFocusedUIElement")),
              path("second"));
}

TEST_F(AtspiTreeTests, AFocusThatCannotBeSearchedIsNotThere) {
    const std::vector<std::optional<std::vector<FakeAccessibleName>>> searches = {
        std::nullopt, std::vector<FakeAccessibleName>{}, std::vector<FakeAccessibleName>{{"", "/"}},
        std::vector<FakeAccessibleName>{{"org.example.Application", atspi::nullPath}}};
    addElement(ATSPI_ROLE_ENTRY);
    open();
    for (const auto& search : searches) {
        application.change([&] { application.objects[path("window")].focused = search; });
        EXPECT_THAT(read(applicationElement(), {"AXFocusedUIElement"}).values, IsEmpty());
    }
}

TEST_F(AtspiTreeTests, ChildrenThatAreNothingAreLeftOut) {
    application.add(root(), path("window"), ATSPI_ROLE_FRAME).children = {
        {"", "/"},
        {application.name(), atspi::nullPath},
        {"not a name", path("element")},
        {application.name(), path("window")},
        {application.name(), root()},
    };
    const auto app = applicationElement();
    const auto window = elements(app).at(0);
    EXPECT_THAT(elements(window), ElementsAre(window, app)) << "a cycle leads to the same handles";
}

TEST_F(AtspiTreeTests, OfAVeryLongCollectionTheFirstItemsAreTold) {
    FakeAccessible& table = addElement(ATSPI_ROLE_TABLE);
    for (int i = 0; i < 700; ++i) table.children.emplace_back(application.name(), path("cell" + std::to_string(i)));
    table.children[3] = {"", atspi::nullPath};
    const auto items = elements(element());
    ASSERT_EQ(items.size(), 499U);
    EXPECT_EQ(pathOf(items[3]), path("cell4"));
    EXPECT_EQ(pathOf(items[498]), path("cell499"));
    EXPECT_THAT(application.calls(), Not(Contains("GetChildren " + path("element"))));
}

TEST_F(AtspiTreeTests, ACollectionIsToldWholeWhereItIsNotLong) {
    addElement(ATSPI_ROLE_LIST);
    application.add(path("element"), path("first"), ATSPI_ROLE_LIST_ITEM, {ATSPI_STATE_SHOWING});
    application.add(path("element"), path("second"), ATSPI_ROLE_LIST_ITEM);
    open();
    for (const std::int32_t count : {-1, 2}) {
        application.change([&] { application.objects[path("element")].childCount = count; });
        const auto list = element();
        EXPECT_THAT(pathsOf(elements(list)), ElementsAre(path("first"), path("second"))) << count;
        EXPECT_THAT(pathsOf(elements(list, "AXVisibleChildren")), ElementsAre(path("first"))) << count;
    }
}

TEST_F(AtspiTreeTests, AScrollPaneHasContents) {
    addElement(ATSPI_ROLE_SCROLL_PANE);
    application.add(path("element"), path("bar"), ATSPI_ROLE_SCROLL_BAR);
    application.add(path("element"), path("page"), ATSPI_ROLE_TEXT);
    const auto pane = element();
    EXPECT_THAT(pathsOf(elements(pane, "AXContents")), ElementsAre(path("page")));
    EXPECT_THAT(pathsOf(elements(pane)), ElementsAre(path("bar"), path("page")));
    EXPECT_EQ(read(pane, {"AXVisibleChildren"}).values.size(), 0U);
}

TEST_F(AtspiTreeTests, TextIsRead) {
    const struct {
        std::string text;
        std::pair<std::int32_t, std::int32_t> selection;
        std::size_t length;
        std::optional<std::string> selected;
    } cases[] = {
        {"", {0, 0}, 0, std::nullopt},
        {"some text", {0, 0}, 9, std::nullopt},
        {"some text", {5, 9}, 9, "text"},
        {"some text", {-1, -1}, 9, std::nullopt},
        {"some text", {9, 5}, 9, std::nullopt},
        {std::string(70'000, 'x'), {0, 70'000}, 65'536, std::string(65'536, 'x')},
    };
    addElement(ATSPI_ROLE_TEXT);
    open();
    for (const auto& each : cases) {
        application.change([&] {
            FakeAccessible& field = application.objects[path("element")];
            field.text = each.text;
            field.selection = each.selection;
        });
        const AccessibilityAnswer answer = read(element(), {"AXValue", "AXSelectedText"});
        EXPECT_EQ(valueIn<std::string>(answer, "AXValue"), each.text.substr(0, each.length));
        EXPECT_EQ(valueIn<std::string>(answer, "AXSelectedText"), each.selected);
    }
}

TEST_F(AtspiTreeTests, ANameMayBeThePlaceholder) {
    FakeAccessible& field = addElement(ATSPI_ROLE_ENTRY);
    field.name = "Find";
    const auto found = element();
    EXPECT_EQ(valueIn<std::string>(read(found, {"AXPlaceholderValue"}), "AXPlaceholderValue"), std::nullopt);
    application.change([&] { field.attributes = {{"name-from", "placeholder"}}; });
    EXPECT_EQ(valueIn<std::string>(read(found, {"AXPlaceholderValue"}), "AXPlaceholderValue"), "Find");
    application.change([&] { field.attributes = {{"name-from", "attribute"}}; });
    EXPECT_EQ(valueIn<std::string>(read(found, {"AXPlaceholderValue"}), "AXPlaceholderValue"), std::nullopt);
}

TEST_F(AtspiTreeTests, APasswordIsNeverAskedFor) {
    FakeAccessible& field = addElement(ATSPI_ROLE_PASSWORD_TEXT, {ATSPI_STATE_EDITABLE});
    field.text = "secret";
    field.selection = {0, 6};
    field.interfaces = {atspi::text, atspi::editableText};
    const AccessibilityAnswer answer = read(element(), {"AXValue", "AXSelectedText", "AXSubrole"}, {"AXValue"});
    EXPECT_EQ(valueIn<std::string>(answer, "AXSubrole"), "AXSecureTextField");
    EXPECT_EQ(answer.values.size(), 1U);
    EXPECT_EQ(answer.settable.size(), 1U);
    for (const char* call : {"GetText", "GetSelection", "CharacterCount"}) EXPECT_EQ(application.countOf(call), 0U);
}

TEST_F(AtspiTreeTests, ElementsThatSayTheyAreDefunctHaveNothing) {
    addElement(ATSPI_ROLE_ENTRY, {ATSPI_STATE_DEFUNCT, ATSPI_STATE_EDITABLE}).name = "was";
    const auto gone = element();
    const AccessibilityAnswer answer = read(gone, {"AXRole", "AXTitle", "AXSize", "AXChildren", "AXFocused"});
    EXPECT_TRUE(answer.values.empty());
    EXPECT_FALSE(runTask(tree().setValue(gone, "AXValue", "text")));
}

TEST_F(AtspiTreeTests, AnswersOfOtherTypesAreNone) {
    FakeAccessible& field = addElement(ATSPI_ROLE_TEXT, {ATSPI_STATE_EDITABLE});
    field.text = "text";
    field.interfaces = {atspi::text, atspi::editableText};
    const auto found = element();
    const std::map<std::string, std::string> attributes = {{"GetRole", "AXRole"},
                                                           {"GetState", "AXFocused"},
                                                           {"Name", "AXTitle"},
                                                           {"GetExtents", "AXSize"},
                                                           {"GetChildren", "AXChildren"},
                                                           {"Description", "AXDescription"},
                                                           {"CharacterCount", "AXValue"},
                                                           {"GetText", "AXValue"},
                                                           {"AccessibleId", "AXIdentifier"},
                                                           {"GetSelection", "AXSelectedText"},
                                                           {"GetLocalizedRoleName", "AXRoleDescription"},
                                                           {"GetAttributes", "AXPlaceholderValue"}};
    for (const auto& [method, attribute] : attributes) {
        application.change([&] { application.garbled = {method}; });
        EXPECT_THAT(read(found, {attribute}).values, IsEmpty()) << method;
    }
    for (const char* method : {"GetInterfaces", "GetState"}) {
        application.change([&] { application.garbled = {method}; });
        EXPECT_THAT(read(found, {}, {"AXValue"}).settable, IsEmpty()) << method;
        EXPECT_FALSE(runTask(tree().setValue(found, "AXValue", "text"))) << method;
    }
    application.change([&] { application.garbled = {"GetMatches"}; });
    EXPECT_THAT(read(applicationElement(), {"AXFocusedUIElement"}).values, IsEmpty());
}

TEST_F(AtspiTreeTests, ARegistryThatTalksNonsenseKnowsNoApplication) {
    registry.change([&] { registry.garbled = {"GetChildren"}; });
    EXPECT_TRUE(read(applicationElement(), {"AXRole"}).values.empty());
}

TEST_F(AtspiTreeTests, AnApplicationThatDoesNotAnswerIsWaitedForOnceInAll) {
    addElement(ATSPI_ROLE_ENTRY);
    patience.application = milliseconds(60);
    const auto app = applicationElement();
    const auto window = elements(app).at(0);
    application.change([&] { application.answersLeft = 0; });
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < 50; ++i) EXPECT_TRUE(read(window, everything().attributes).values.empty());
    const auto spent = std::chrono::steady_clock::now() - start;
    EXPECT_GE(spent, milliseconds(30));
    EXPECT_LT(spent, milliseconds(1500));
    const std::size_t asked = application.calls().size();
    EXPECT_FALSE(runTask(tree().setValue(window, "AXValue", "text")));
    EXPECT_TRUE(read(app, everything().attributes).values.empty());
    EXPECT_EQ(application.calls().size(), asked) << "nothing more is asked of it";
    EXPECT_THAT(log, ElementsAre("accessibility application unanswered"));
}

TEST_F(AtspiTreeTests, ANewLookAtAnApplicationHasNewPatience) {
    addElement(ATSPI_ROLE_ENTRY);
    patience.application = milliseconds(60);
    const auto app = applicationElement();
    application.change([&] { application.answersLeft = 0; });
    EXPECT_TRUE(elements(app).empty());
    application.change([&] { application.answersLeft = SIZE_MAX; });
    EXPECT_TRUE(elements(app).empty());
    EXPECT_EQ(elements(applicationElement()).size(), 1U);
}

TEST_F(AtspiTreeTests, WhatWasAnsweredBeforeTheDeadlineIsTold) {
    application.objects[root()].name = "Example";
    patience.application = milliseconds(60);
    const auto app = applicationElement();
    application.change([&] { application.answersLeft = 1; });
    const AccessibilityAnswer answer = read(app, {"AXRole", "AXTitle"});
    EXPECT_EQ(valueIn<std::string>(answer, "AXRole"), "AXApplication");
    EXPECT_EQ(answer.values.size(), 1U);
}

TEST_F(AtspiTreeTests, ARegistryThatDoesNotAnswerIsNotWaitedForLong) {
    patience.bus = milliseconds(60);
    registry.change([&] { registry.answersLeft = 0; });
    EXPECT_TRUE(read(applicationElement(), {"AXRole"}).values.empty());
}

TEST_F(AtspiTreeTests, AnApplicationThatIsGoneHasNothing) {
    addElement(ATSPI_ROLE_ENTRY);
    const auto app = applicationElement();
    const auto window = elements(app).at(0);
    application.stop();
    EXPECT_TRUE(read(window, everything().attributes).values.empty());
    EXPECT_TRUE(read(app, everything().attributes).values.empty());
    EXPECT_FALSE(runTask(tree().setValue(window, "AXValue", "text")));
    EXPECT_TRUE(read(applicationElement(), {"AXRole"}).values.empty());
}

TEST_F(AtspiTreeTests, AWindowThatIsGoneHasNothing) {
    addElement(ATSPI_ROLE_ENTRY);
    const auto window = elements(applicationElement()).at(0);
    application.change([&] { application.objects.erase(path("window")); });
    EXPECT_TRUE(read(window, everything().attributes).values.empty());
}

TEST_F(AtspiTreeTests, TextIsReplaced) {
    FakeAccessible& field = addElement(ATSPI_ROLE_TEXT, {ATSPI_STATE_EDITABLE});
    field.text = "before";
    field.interfaces = {atspi::text, atspi::editableText};
    EXPECT_TRUE(runTask(tree().setValue(element(), "AXValue", "after")));
    EXPECT_EQ(application.textOf(path("element")), "after");
}

TEST_F(AtspiTreeTests, TextThatIsNotTakenIsToldSo) {
    const struct {
        std::string name;
        bool accepts;
        std::vector<AtspiStateType> states;
        std::vector<std::string> interfaces;
        std::string attribute;
    } cases[] = {
        {"refused", false, {ATSPI_STATE_EDITABLE}, {atspi::editableText}, "AXValue"},
        {"not editable", true, {}, {atspi::editableText}, "AXValue"},
        {"read only", true, {ATSPI_STATE_EDITABLE, ATSPI_STATE_READ_ONLY}, {atspi::editableText}, "AXValue"},
        {"no interface", true, {ATSPI_STATE_EDITABLE}, {atspi::text}, "AXValue"},
        {"another attribute", true, {ATSPI_STATE_EDITABLE}, {atspi::editableText}, "AXTitle"},
    };
    addElement(ATSPI_ROLE_TEXT);
    open();
    for (const auto& each : cases) {
        application.change([&] {
            FakeAccessible& field = application.objects[path("element")];
            field.text = "before";
            field.acceptsText = each.accepts;
            field.states = each.states;
            field.interfaces = each.interfaces;
        });
        EXPECT_FALSE(runTask(tree().setValue(element(), each.attribute, "after"))) << each.name;
        EXPECT_EQ(application.textOf(path("element")), "before") << each.name;
    }
}

TEST_F(AtspiTreeTests, AWriteThatFailsIsNotTaken) {
    FakeAccessible& field = addElement(ATSPI_ROLE_TEXT, {ATSPI_STATE_EDITABLE});
    field.interfaces = {atspi::editableText}; // said, but not so
    EXPECT_FALSE(runTask(tree().setValue(element(), "AXValue", "after")));
    EXPECT_EQ(application.countOf("SetTextContents"), 1U);
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(AtspiTreeTests, AWriteThatIsNotAnsweredIsNotTaken) {
    FakeAccessible& field = addElement(ATSPI_ROLE_TEXT, {ATSPI_STATE_EDITABLE});
    field.text = "before";
    field.interfaces = {atspi::editableText};
    patience.application = milliseconds(60);
    application.unanswered = "SetTextContents";
    EXPECT_FALSE(runTask(tree().setValue(element(), "AXValue", "after")));
    EXPECT_THAT(log, ElementsAre("accessibility application unanswered"));
}

TEST_F(AtspiTreeTests, NumbersAreSet) {
    const struct {
        std::string text;
        std::optional<double> set;
    } cases[] = {{"7", 7.0},
                 {"-2.5", -2.5},
                 {"1e2", 100.0},
                 {"", std::nullopt},
                 {"seven", std::nullopt},
                 {"7 apples", std::nullopt},
                 {" 7", std::nullopt},
                 {"nan", std::nullopt},
                 {"inf", std::nullopt},
                 {"1e999", std::nullopt}};
    FakeAccessible& slider = addElement(ATSPI_ROLE_SLIDER, {ATSPI_STATE_SENSITIVE});
    slider.interfaces = {atspi::value};
    slider.number = 3;
    const auto found = element();
    for (const auto& each : cases) {
        application.change([&] { application.objects[path("element")].number = 3; });
        EXPECT_EQ(runTask(tree().setValue(found, "AXValue", each.text)), each.set.has_value()) << each.text;
        EXPECT_EQ(application.numberOf(path("element")), each.set.value_or(3)) << each.text;
    }
}

TEST_F(AtspiTreeTests, AFieldForNumbersTakesThemAsNumbersAndTheRestAsText) {
    FakeAccessible& spinner = addElement(ATSPI_ROLE_SPIN_BUTTON, {ATSPI_STATE_SENSITIVE, ATSPI_STATE_EDITABLE});
    spinner.interfaces = {atspi::value, atspi::text, atspi::editableText};
    spinner.number = 3;
    spinner.text = "3";
    const auto found = element();
    EXPECT_TRUE(runTask(tree().setValue(found, "AXValue", "4")));
    EXPECT_EQ(application.numberOf(path("element")), 4);
    EXPECT_EQ(application.textOf(path("element")), "3");
    EXPECT_TRUE(runTask(tree().setValue(found, "AXValue", "four")));
    EXPECT_EQ(application.textOf(path("element")), "four");
}

/// A chain of groups, each with some siblings, in breadth-first order; the last element is an entry.
class AtspiWalkTests : public AtspiTreeTests {
protected:
    void addElements(std::size_t count) {
        application.add(root(), path("window"), ATSPI_ROLE_FRAME, {ATSPI_STATE_ACTIVE});
        std::string parent = path("window");
        for (std::size_t i = 1; i < count; ++i) {
            const std::string name = path("n" + std::to_string(i));
            application.add(parent, name, ATSPI_ROLE_PANEL);
            if (i % 25 == 0) parent = name;
        }
        FakeAccessible& last = application.objects[path("n" + std::to_string(count - 1))];
        last.role = ATSPI_ROLE_ENTRY;
        last.states = {ATSPI_STATE_EDITABLE};
    }
    std::optional<AccessibilityElementHandle> found() {
        const auto app = applicationElement();
        return runTask(findBestInspectableDescendant(tree(), elements(app).at(0)));
    }
};

TEST_F(AtspiWalkTests, TheLastOfFiveHundredElementsIsFound) {
    addElements(500);
    EXPECT_EQ(pathOf(found().value_or(nullptr)), path("n499"));
}

TEST_F(AtspiWalkTests, TheElementAfterThatIsNot) {
    addElements(501);
    EXPECT_FALSE(found());
    EXPECT_EQ(application.countOf("GetExtents"), 500U);
}

TEST_F(AtspiWalkTests, AnElementCostsFewCalls) {
    addElements(500);
    found();
    EXPECT_LT(application.calls().size(), 500U * 5 + 20);
}

TEST_F(AtspiWalkTests, ACycleEnds) {
    addElements(50);
    application.objects[path("n48")].children = {{application.name(), path("window")}, {application.name(), root()}};
    EXPECT_EQ(pathOf(found().value_or(nullptr)), path("n49"));
}

TEST_F(AtspiWalkTests, AnApplicationThatStopsAnsweringEndsTheWalk) {
    addElements(500);
    patience.application = milliseconds(80);
    application.change([&] { application.answersLeft = 200; });
    EXPECT_FALSE(found());
}

} // namespace
} // namespace vesk::test
