#include "VeskPlatform/Linux/Accessibility/AtspiNames.hpp"
#include "tests/VeskPlatform/Linux/Accessibility/AccessibleWorld.hpp"

#include <gmock/gmock.h>

namespace vesk::test {
namespace {

using std::chrono::milliseconds;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Setting values through the tree.
using AtspiSettingTests = AccessibleWorld;

TEST_F(AtspiSettingTests, TextIsReplaced) {
    FakeAccessible& field = addElement(ATSPI_ROLE_TEXT, {ATSPI_STATE_EDITABLE});
    field.text = "before";
    field.interfaces = {atspi::text, atspi::editableText};
    EXPECT_TRUE(runTask(tree().setValue(element(), "AXValue", "after")));
    EXPECT_EQ(application.textOf(path("element")), "after");
}

TEST_F(AtspiSettingTests, TextThatIsNotTakenIsToldSo) {
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

TEST_F(AtspiSettingTests, AWriteThatFailsIsNotTaken) {
    FakeAccessible& field = addElement(ATSPI_ROLE_TEXT, {ATSPI_STATE_EDITABLE});
    field.interfaces = {atspi::editableText}; // said, but not so
    EXPECT_FALSE(runTask(tree().setValue(element(), "AXValue", "after")));
    EXPECT_EQ(application.countOf("SetTextContents"), 1U);
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(AtspiSettingTests, AWriteThatIsNotAnsweredIsNotTaken) {
    FakeAccessible& field = addElement(ATSPI_ROLE_TEXT, {ATSPI_STATE_EDITABLE});
    field.text = "before";
    field.interfaces = {atspi::editableText};
    patience.application = milliseconds(200);
    application.change([&] { application.unanswered = "SetTextContents"; });
    EXPECT_FALSE(runTask(tree().setValue(element(), "AXValue", "after")));
    EXPECT_THAT(log, ElementsAre("accessibility application unanswered"));
}

TEST_F(AtspiSettingTests, NumbersAreSet) {
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

TEST_F(AtspiSettingTests, AFieldForNumbersTakesThemAsNumbersAndTheRestAsText) {
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

} // namespace
} // namespace vesk::test
