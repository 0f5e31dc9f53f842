#include "VeskPlatform/Linux/Accessibility/AtspiTree.hpp"

#include "tests/VeskPlatform/Linux/Accessibility/AccessibleWorld.hpp"

#include <gmock/gmock.h>

namespace vesk::test {
namespace {

using std::chrono::milliseconds;
using ::testing::ElementsAre;

using AtspiTreeTests = AccessibleWorld;

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

TEST_F(AtspiTreeTests, ARegistryThatTalksNonsenseKnowsNoApplication) {
    registry.change([&] { registry.garbled = {"GetChildren"}; });
    EXPECT_TRUE(read(applicationElement(), {"AXRole"}).values.empty());
}

TEST_F(AtspiTreeTests, AnApplicationThatDoesNotAnswerIsWaitedForOnceInAll) {
    addElement(ATSPI_ROLE_ENTRY);
    patience.application = milliseconds(500);
    const auto app = applicationElement();
    const auto window = elements(app).at(0);
    application.change([&] { application.answersLeft = 0; });
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < 50; ++i) EXPECT_TRUE(read(window, everything().attributes).values.empty());
    const auto spent = std::chrono::steady_clock::now() - start;
    EXPECT_GE(spent, milliseconds(50));
    EXPECT_LT(spent, milliseconds(5000));
    const std::size_t asked = application.calls().size();
    EXPECT_FALSE(runTask(tree().setValue(window, "AXValue", "text")));
    EXPECT_TRUE(read(app, everything().attributes).values.empty());
    EXPECT_EQ(application.calls().size(), asked) << "nothing more is asked of it";
    EXPECT_THAT(log, ElementsAre("accessibility application unanswered"));
}

TEST_F(AtspiTreeTests, ANewLookAtAnApplicationHasNewPatience) {
    addElement(ATSPI_ROLE_ENTRY);
    patience.application = milliseconds(500);
    const auto app = applicationElement();
    application.change([&] { application.answersLeft = 0; });
    EXPECT_TRUE(elements(app).empty());
    application.change([&] { application.answersLeft = SIZE_MAX; });
    EXPECT_TRUE(elements(app).empty());
    EXPECT_EQ(elements(applicationElement()).size(), 1U);
}

TEST_F(AtspiTreeTests, WhatWasAnsweredBeforeTheDeadlineIsTold) {
    application.objects[root()].name = "Example";
    patience.application = milliseconds(500);
    const auto app = applicationElement();
    application.change([&] { application.answersLeft = 1; });
    const AccessibilityAnswer answer = read(app, {"AXRole", "AXTitle"});
    EXPECT_EQ(valueIn<std::string>(answer, "AXRole"), "AXApplication");
    EXPECT_EQ(answer.values.size(), 1U);
}

TEST_F(AtspiTreeTests, ARegistryThatDoesNotAnswerIsNotWaitedForLong) {
    patience.bus = milliseconds(500);
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

} // namespace
} // namespace vesk::test
