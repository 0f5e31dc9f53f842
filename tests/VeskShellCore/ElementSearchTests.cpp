#include "VeskShellCore/ElementSearch.hpp"

#include "tests/fakes/FakeAccessibility.hpp"
#include "tests/fakes/RunTask.hpp"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>

namespace vesk::test {
namespace {

using Elements = std::vector<AccessibilityElementHandle>;

AccessibilityAnswer answerOf(const FakeElement& element) { return {element.values, element.settable}; }

FakeElementHandle elementWith(const std::vector<FakeElementHandle>& children) {
    auto element = fakeElement();
    element->with("AXChildren", elementsValue(children));
    return element;
}

/// 65 points: settable, and of a role that looks editable but says that it is not.
FakeElementHandle lockedField() {
    auto element = fakeElement();
    element->withText("AXRole", "AXTextField").withFlag("AXEditable", false).withSettable("AXValue");
    return element;
}

FakeElementHandle focusedField() {
    auto element = fakeElement();
    element->withText("AXRole", "AXTextField").withFlag("AXFocused", true);
    return element;
}

class ElementSearch : public ::testing::Test {
protected:
    FakeAccessibilityTree tree;
    std::optional<AccessibilityElementHandle> best(const FakeElementHandle& start) {
        return runTask(findBestInspectableDescendant(tree, start));
    }
};

TEST_F(ElementSearch, ScoresAreTheSumOfWhatHolds) {
    struct Case {
        std::string name;
        std::function<void(FakeElement&)> make;
        std::int64_t score;
    };
    const Case cases[] = {
        {"nothing", [](FakeElement&) {}, 0},
        {"focused", [](FakeElement& e) { e.withFlag("AXFocused", true); }, 120},
        {"not focused", [](FakeElement& e) { e.withFlag("AXFocused", false); }, 0},
        {"says editable", [](FakeElement& e) { e.withFlag("AXEditable", true); }, 80},
        {"focused and editable", [](FakeElement& e) { e.withFlag("AXEditable", true).withFlag("AXFocused", true); },
         200},
        {"editable role", [](FakeElement& e) { e.withText("AXRole", "AXTextArea"); }, 105},
        {"editable subrole", [](FakeElement& e) { e.withText("AXSubrole", "AXSearchField"); }, 105},
        {"editable role that is not editable",
         [](FakeElement& e) { e.withText("AXRole", "AXTextField").withFlag("AXEditable", false); }, 25},
        {"focused editable role that is not editable",
         [](FakeElement& e) {
             e.withText("AXRole", "AXTextField").withFlag("AXEditable", false).withFlag("AXFocused", true);
         },
         145},
        {"settable", [](FakeElement& e) { e.withSettable("AXValue"); }, 40},
        {"another attribute settable", [](FakeElement& e) { e.withSettable("AXTitle"); }, 0},
        {"placeholder", [](FakeElement& e) { e.withText("AXPlaceholderValue", "p"); }, 10},
        {"empty placeholder", [](FakeElement& e) { e.withText("AXPlaceholderValue", ""); }, 0},
        {"identifier", [](FakeElement& e) { e.withText("AXIdentifier", "i"); }, 5},
        {"empty identifier", [](FakeElement& e) { e.withText("AXIdentifier", ""); }, 0},
        {"large",
         [](FakeElement& e) {
             e.with("AXSize", {ScreenSize{20.5, 16.5}});
         },
         10},
        {"too narrow",
         [](FakeElement& e) {
             e.with("AXSize", {ScreenSize{20, 17}});
         },
         0},
        {"too low",
         [](FakeElement& e) {
             e.with("AXSize", {ScreenSize{21, 16}});
         },
         0},
        {"all",
         [](FakeElement& e) {
             e.withText("AXRole", "AXTextField").withFlag("AXFocused", true).withSettable("AXValue");
             e.withText("AXPlaceholderValue", "p").withText("AXIdentifier", "i").with("AXSize", {ScreenSize{99, 99}});
         },
         290},
    };
    for (const Case& expected : cases) {
        FakeElement element;
        expected.make(element);
        EXPECT_EQ(scoreInspectableCandidate(answerOf(element)), expected.score) << expected.name;
    }
}

TEST_F(ElementSearch, TheQueryAsksForAllThatScoresAndChildrenNeed) {
    const AccessibilityQuery query = searchQuery();
    EXPECT_EQ(query.attributes,
              (std::vector<std::string>{"AXRole", "AXSubrole", "AXEditable", "AXFocused", "AXPlaceholderValue",
                                        "AXIdentifier", "AXSize", "AXChildren", "AXVisibleChildren", "AXContents"}));
    EXPECT_EQ(query.settable, std::vector<std::string>{"AXValue"});
}

TEST_F(ElementSearch, ChildrenOfAllListsCountOnce) {
    const auto a = fakeElement(), b = fakeElement(), c = fakeElement(), d = fakeElement();
    FakeElement parent;
    parent.with("AXContents", elementsValue({d, a, c}))
        .with("AXVisibleChildren", elementsValue({c, b}))
        .with("AXChildren", elementsValue({b, a, b}));
    EXPECT_EQ(childElements(answerOf(parent)), (Elements{b, a, c, d}));
    EXPECT_TRUE(childElements({}).empty());
}

TEST_F(ElementSearch, TheStartItselfIsACandidate) {
    const auto start = lockedField();
    EXPECT_EQ(best(start), start);
}

TEST_F(ElementSearch, TheHighestScoreWins) {
    const auto low = lockedField(), high = fakeElement();
    high->withText("AXRole", "AXTextField");
    EXPECT_EQ(best(elementWith({low, elementWith({high})})), high);
}

TEST_F(ElementSearch, OfEqualScoresTheFirstMetBreadthFirstWins) {
    const auto deep = lockedField(), shallow = lockedField(), later = lockedField();
    EXPECT_EQ(best(elementWith({elementWith({deep}), shallow, later})), shallow);
}

TEST_F(ElementSearch, TheFirstScoreOf200EndsTheWalk) {
    const auto first = fakeElement(), second = focusedField();
    first->withFlag("AXEditable", true).withFlag("AXFocused", true); // 200
    const auto below = focusedField();
    first->with("AXChildren", elementsValue({below}));
    EXPECT_EQ(best(elementWith({first, second})), first) << "the second has 225";
    EXPECT_EQ(std::ranges::count(tree.visited, AccessibilityElementHandle(below)), 0);
}

TEST_F(ElementSearch, AScoreBelow200DoesNotEndTheWalk) {
    const auto almost = fakeElement(), better = focusedField();
    almost->withFlag("AXFocused", true).withSettable("AXValue").withText("AXPlaceholderValue", "p");
    almost->withText("AXIdentifier", "i").with("AXSize", {ScreenSize{99, 99}}); // 185
    EXPECT_EQ(best(elementWith({almost, better})), better);
}

TEST_F(ElementSearch, AScoreBelow40IsNoResult) {
    const auto element = fakeElement();
    element->withText("AXRole", "AXTextField").withFlag("AXEditable", false).withText("AXPlaceholderValue", "p"); // 35
    EXPECT_EQ(best(element), std::nullopt);
    element->withText("AXIdentifier", "i"); // 40
    EXPECT_EQ(best(element), element);
    EXPECT_EQ(best(fakeElement()), std::nullopt);
}

/// A start with `count` plain children, of which the last is given.
FakeElementHandle wideTree(std::size_t count, const FakeElementHandle& last) {
    std::vector<FakeElementHandle> children;
    for (std::size_t i = 1; i < count; ++i) children.push_back(fakeElement());
    children.push_back(last);
    return elementWith(children);
}

TEST_F(ElementSearch, The500thNodeIsLookedAt) {
    const auto field = focusedField();
    EXPECT_EQ(best(wideTree(499, field)), field);
    EXPECT_EQ(tree.visited.size(), 500U);
}

TEST_F(ElementSearch, The501stNodeIsNotLookedAt) {
    EXPECT_EQ(best(wideTree(500, focusedField())), std::nullopt);
    EXPECT_EQ(tree.visited.size(), 500U) << "and not even read";
}

TEST_F(ElementSearch, TheBestOfTheFirst500IsTheResult) {
    const auto start = wideTree(500, focusedField());
    start->withSettable("AXValue");
    EXPECT_EQ(best(start), start);
}

TEST_F(ElementSearch, DepthHasNoLimit) {
    const auto field = focusedField();
    FakeElementHandle start = field;
    for (int i = 0; i < 499; ++i) start = elementWith({start});
    EXPECT_EQ(best(start), field);
}

TEST_F(ElementSearch, AnElementIsVisitedOnceAlsoInACircle) {
    const auto start = fakeElement(), child = fakeElement();
    start->with("AXChildren", elementsValue({child, start}));
    child->with("AXContents", elementsValue({start, child}));
    EXPECT_EQ(best(start), std::nullopt);
    EXPECT_EQ(tree.visited, (Elements{start, child}));
    start->values.clear(); // or the two would keep each other
    child->values.clear();
}

TEST_F(ElementSearch, ElementsAreVisitedBreadthFirst) {
    const auto a1 = fakeElement(), b1 = fakeElement();
    const auto a = elementWith({a1}), b = elementWith({b1});
    const auto start = elementWith({a, b});
    best(start);
    EXPECT_EQ(tree.visited, (Elements{start, a, b, a1, b1}));
}

} // namespace
} // namespace vesk::test
