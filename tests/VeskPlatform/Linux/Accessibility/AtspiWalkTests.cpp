#include "VeskShellCore/ElementSearch.hpp"
#include "tests/VeskPlatform/Linux/Accessibility/AccessibleWorld.hpp"

namespace vesk::test {
namespace {

using std::chrono::milliseconds;

/// A chain of groups, each with some siblings, in breadth-first order; the last element is an entry.
class AtspiWalkTests : public AccessibleWorld {
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

TEST_F(AtspiWalkTests, AnApplicationWithoutIdentifiersIsNotAskedForEachOfThem) {
    addElements(500);
    application.garbled = {"AccessibleId"};
    EXPECT_TRUE(found());
    EXPECT_EQ(application.countOf("AccessibleId"), 1U);
    EXPECT_TRUE(found()) << "a new look asks anew";
    EXPECT_EQ(application.countOf("AccessibleId"), 2U);
}

TEST_F(AtspiWalkTests, ACycleEnds) {
    addElements(50);
    application.objects[path("n48")].children = {{application.name(), path("window")}, {application.name(), root()}};
    EXPECT_EQ(pathOf(found().value_or(nullptr)), path("n49"));
}

TEST_F(AtspiWalkTests, AnApplicationThatStopsAnsweringEndsTheWalk) {
    addElements(500);
    patience.application = milliseconds(300);
    application.change([&] { application.answersLeft = 200; });
    EXPECT_FALSE(found());
}

} // namespace
} // namespace vesk::test
