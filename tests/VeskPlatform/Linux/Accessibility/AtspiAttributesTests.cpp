#include "VeskPlatform/Linux/Accessibility/AtspiAttributes.hpp"

#include "VeskPlatform/Linux/Accessibility/AtspiNames.hpp"

#include <gtest/gtest.h>

namespace vesk::test {
namespace {

AtspiStates statesOf(std::initializer_list<AtspiStateType> states) {
    AtspiStates all;
    for (const AtspiStateType state : states) all.bits |= std::uint64_t{1} << state;
    return all;
}

AtspiFacts factsOf(AtspiRole role, std::initializer_list<AtspiStateType> states = {}) {
    AtspiFacts facts;
    facts.role = role;
    facts.states = statesOf(states);
    return facts;
}

const AtspiElement element{{"org.example", "/element"}, std::make_shared<AtspiApplication>(), nullptr};

/// Null where the attribute has no value of this type.
template <class T> std::optional<T> valueOf(const AtspiFacts& facts, const std::string& attribute) {
    const AccessibilityAnswer answer = answerTo({{attribute}, {}}, element, facts);
    const auto found = answer.values.find(attribute);
    if (found == answer.values.end()) return std::nullopt;
    const T* value = std::get_if<T>(&found->second.value);
    return value == nullptr ? std::nullopt : std::optional(*value);
}

bool hasValue(const AtspiFacts& facts, const std::string& attribute) {
    return !answerTo({{attribute}, {}}, element, facts).values.empty();
}

bool isSettable(const AtspiFacts& facts, const std::string& attribute = "AXValue") {
    return answerTo({{}, {attribute}}, element, facts).settable.contains(attribute);
}

TEST(AtspiAttributesTests, WithoutFactsNothingHasAValue) {
    const AccessibilityQuery query = {{"AXRole",          "AXSubrole",    "AXRoleDescription",  "AXIdentifier",
                                       "AXDescription",   "AXTitle",      "AXPlaceholderValue", "AXValue",
                                       "AXSelectedText",  "AXEditable",   "AXFocused",          "AXPosition",
                                       "AXSize",          "AXChildren",   "AXVisibleChildren",  "AXContents",
                                       "AXFocusedWindow", "AXMainWindow", "AXWindow",           "AXFocusedUIElement"},
                                      {"AXValue"}};
    const AccessibilityAnswer answer = answerTo(query, element, {});
    EXPECT_TRUE(answer.values.empty());
    EXPECT_TRUE(answer.settable.empty());
}

TEST(AtspiAttributesTests, UnknownAttributesHaveNoValueAndNeedNothing) {
    const AccessibilityQuery query{{"AXHelp", ""}, {"AXTitle"}};
    const AccessibilityAnswer answer = answerTo(query, element, factsOf(ATSPI_ROLE_ENTRY));
    EXPECT_TRUE(answer.values.empty());
    EXPECT_TRUE(answer.settable.empty());
    EXPECT_FALSE(factsFor(query).has(AtspiFact::role));
}

TEST(AtspiAttributesTests, AQueryNeedsWhatItsAttributesNeed) {
    const AtspiFactSet facts = factsFor({{"AXTitle", "AXSize"}, {}});
    EXPECT_TRUE(facts.has(AtspiFact::name));
    EXPECT_TRUE(facts.has(AtspiFact::extents));
    EXPECT_FALSE(facts.has(AtspiFact::role));
    EXPECT_FALSE(facts.has(AtspiFact::children));
    EXPECT_TRUE(factsFor({{}, {"AXValue"}}).has(AtspiFact::interfaces));
}

TEST(AtspiAttributesTests, TextsAreThereWhereTheyAreNotEmpty) {
    AtspiFacts facts = factsOf(ATSPI_ROLE_ENTRY);
    const std::pair<const char*, std::optional<std::string> AtspiFacts::*> texts[] = {
        {"AXTitle", &AtspiFacts::name},
        {"AXDescription", &AtspiFacts::description},
        {"AXIdentifier", &AtspiFacts::identifier},
        {"AXRoleDescription", &AtspiFacts::roleName},
        {"AXSelectedText", &AtspiFacts::selection}};
    for (const auto& [attribute, member] : texts) {
        facts.*member = "";
        EXPECT_FALSE(hasValue(facts, attribute)) << attribute;
        facts.*member = "Grüße";
        EXPECT_EQ(valueOf<std::string>(facts, attribute), "Grüße") << attribute;
    }
}

TEST(AtspiAttributesTests, PlaceholdersAndIdentifiersStandInTheAttributesToo) {
    const struct {
        const char *attribute, *name;
    } cases[] = {
        {"AXPlaceholderValue", "placeholder-text"}, {"AXPlaceholderValue", "placeholder"}, {"AXIdentifier", "id"}};
    for (const auto& each : cases) {
        AtspiFacts facts = factsOf(ATSPI_ROLE_ENTRY);
        facts.attributes[each.name] = "";
        EXPECT_FALSE(hasValue(facts, each.attribute)) << each.name;
        facts.attributes[each.name] = "Find";
        EXPECT_EQ(valueOf<std::string>(facts, each.attribute), "Find") << each.name;
    }
    AtspiFacts facts = factsOf(ATSPI_ROLE_ENTRY);
    facts.identifier = "own";
    facts.attributes["id"] = "other";
    EXPECT_EQ(valueOf<std::string>(facts, "AXIdentifier"), "own");
}

TEST(AtspiAttributesTests, SearchFieldsAreKnownByTheirAttributes) {
    const struct {
        AtspiRole role;
        std::map<std::string, std::string> attributes;
        std::optional<std::string> subrole;
    } cases[] = {
        {ATSPI_ROLE_ENTRY, {{"text-input-type", "search"}}, "AXSearchField"},
        {ATSPI_ROLE_ENTRY, {{"xml-roles", "searchbox"}}, "AXSearchField"},
        {ATSPI_ROLE_ENTRY, {{"text-input-type", "text"}, {"xml-roles", "textbox"}}, std::nullopt},
        {ATSPI_ROLE_ENTRY, {}, std::nullopt},
        {ATSPI_ROLE_PASSWORD_TEXT, {{"xml-roles", "searchbox"}}, "AXSecureTextField"},
        {ATSPI_ROLE_LABEL, {{"xml-roles", "searchbox"}}, std::nullopt},
    };
    for (const auto& each : cases) {
        AtspiFacts facts = factsOf(each.role);
        facts.attributes = each.attributes;
        EXPECT_EQ(valueOf<std::string>(facts, "AXSubrole"), each.subrole) << each.role;
    }
}

TEST(AtspiAttributesTests, ValuesAreNumbersTextsOrMarks) {
    AtspiFacts slider = factsOf(ATSPI_ROLE_SLIDER);
    slider.number = 2.5;
    EXPECT_EQ(valueOf<double>(slider, "AXValue"), 2.5);
    AtspiFacts spinner = factsOf(ATSPI_ROLE_SPIN_BUTTON);
    spinner.number = 2;
    spinner.text = "2 mm";
    EXPECT_EQ(valueOf<double>(spinner, "AXValue"), 2);
    AtspiFacts field = factsOf(ATSPI_ROLE_ENTRY);
    EXPECT_FALSE(hasValue(field, "AXValue"));
    field.text = "";
    EXPECT_EQ(valueOf<std::string>(field, "AXValue"), "");
    AtspiFacts label = factsOf(ATSPI_ROLE_LABEL);
    EXPECT_FALSE(hasValue(label, "AXValue"));
    label.name = "Name:";
    EXPECT_EQ(valueOf<std::string>(label, "AXValue"), "Name:");
    AtspiFacts button = factsOf(ATSPI_ROLE_PUSH_BUTTON);
    button.name = "Go";
    EXPECT_FALSE(hasValue(button, "AXValue"));
}

TEST(AtspiAttributesTests, MarksAreNumbers) {
    const struct {
        AtspiRole role;
        std::initializer_list<AtspiStateType> states;
        std::int64_t mark;
    } cases[] = {
        {ATSPI_ROLE_CHECK_BOX, {}, 0},
        {ATSPI_ROLE_CHECK_BOX, {ATSPI_STATE_CHECKED}, 1},
        {ATSPI_ROLE_CHECK_BOX, {ATSPI_STATE_CHECKED, ATSPI_STATE_INDETERMINATE}, 2},
        {ATSPI_ROLE_RADIO_BUTTON, {ATSPI_STATE_CHECKED}, 1},
        {ATSPI_ROLE_TOGGLE_BUTTON, {ATSPI_STATE_PRESSED}, 1},
        {ATSPI_ROLE_PAGE_TAB, {ATSPI_STATE_SELECTED}, 1},
        {ATSPI_ROLE_PAGE_TAB, {ATSPI_STATE_CHECKED}, 0},
    };
    for (const auto& each : cases)
        EXPECT_EQ(valueOf<std::int64_t>(factsOf(each.role, each.states), "AXValue"), each.mark) << each.role;
}

TEST(AtspiAttributesTests, EditableIsSaidOfElementsWithText) {
    const struct {
        AtspiRole role;
        std::initializer_list<AtspiStateType> states;
        std::optional<bool> editable;
    } cases[] = {
        {ATSPI_ROLE_ENTRY, {ATSPI_STATE_EDITABLE}, true},
        {ATSPI_ROLE_ENTRY, {}, false},
        {ATSPI_ROLE_ENTRY, {ATSPI_STATE_EDITABLE, ATSPI_STATE_READ_ONLY}, false},
        {ATSPI_ROLE_TABLE_CELL, {ATSPI_STATE_EDITABLE}, true},
        {ATSPI_ROLE_TABLE_CELL, {}, std::nullopt},
        {ATSPI_ROLE_SLIDER, {}, std::nullopt},
    };
    for (const auto& each : cases)
        EXPECT_EQ(valueOf<bool>(factsOf(each.role, each.states), "AXEditable"), each.editable) << each.role;
}

TEST(AtspiAttributesTests, FocusIsAState) {
    EXPECT_EQ(valueOf<bool>(factsOf(ATSPI_ROLE_PANEL, {ATSPI_STATE_FOCUSED}), "AXFocused"), true);
    EXPECT_EQ(valueOf<bool>(factsOf(ATSPI_ROLE_PANEL, {ATSPI_STATE_FOCUSABLE}), "AXFocused"), false);
}

TEST(AtspiAttributesTests, WhatIsNotOnTheScreenHasNoFrame) {
    const struct {
        AtspiExtents extents;
        bool isShown;
    } cases[] = {{{-20, 30, 40, 50}, true},
                 {{0, 0, 0, 0}, true},
                 {{-1, -1, -1, -1}, false},
                 {{10, 10, 20, -1}, false},
                 {{INT32_MIN, INT32_MIN, 20, 20}, false},
                 {{0, INT32_MIN, 20, 20}, false}};
    for (const auto& each : cases) {
        AtspiFacts facts = factsOf(ATSPI_ROLE_PANEL);
        facts.extents = each.extents;
        EXPECT_EQ(hasValue(facts, "AXPosition"), each.isShown) << each.extents.x << " " << each.extents.width;
        EXPECT_EQ(hasValue(facts, "AXSize"), each.isShown) << each.extents.x << " " << each.extents.width;
    }
    AtspiFacts facts = factsOf(ATSPI_ROLE_PANEL);
    facts.extents = {-20, 30, 40, 50};
    EXPECT_EQ(valueOf<ScreenPoint>(facts, "AXPosition"), (ScreenPoint{-20, 30}));
    EXPECT_EQ(valueOf<ScreenSize>(facts, "AXSize"), (ScreenSize{40, 50}));
}

TEST(AtspiAttributesTests, AValueIsSettableWhereTheApplicationTakesChanges) {
    const struct {
        const char* name;
        AtspiRole role;
        std::initializer_list<AtspiStateType> states;
        std::set<std::string> interfaces;
        bool settable;
    } cases[] = {
        {"field", ATSPI_ROLE_ENTRY, {ATSPI_STATE_EDITABLE}, {atspi::editableText}, true},
        {"cell", ATSPI_ROLE_TABLE_CELL, {ATSPI_STATE_EDITABLE}, {atspi::editableText}, true},
        {"password", ATSPI_ROLE_PASSWORD_TEXT, {ATSPI_STATE_EDITABLE}, {atspi::editableText}, true},
        {"text only", ATSPI_ROLE_ENTRY, {ATSPI_STATE_EDITABLE}, {atspi::text}, false},
        {"not editable", ATSPI_ROLE_ENTRY, {}, {atspi::editableText}, false},
        {"read only", ATSPI_ROLE_ENTRY, {ATSPI_STATE_EDITABLE, ATSPI_STATE_READ_ONLY}, {atspi::editableText}, false},
        {"slider", ATSPI_ROLE_SLIDER, {ATSPI_STATE_SENSITIVE}, {atspi::value}, true},
        {"disabled slider", ATSPI_ROLE_SLIDER, {}, {atspi::value}, false},
        {"fixed slider", ATSPI_ROLE_SLIDER, {ATSPI_STATE_SENSITIVE, ATSPI_STATE_READ_ONLY}, {atspi::value}, false},
        {"slider without a value", ATSPI_ROLE_SLIDER, {ATSPI_STATE_SENSITIVE}, {}, false},
        {"progress", ATSPI_ROLE_PROGRESS_BAR, {ATSPI_STATE_SENSITIVE}, {atspi::value}, false},
    };
    for (const auto& each : cases) {
        AtspiFacts facts = factsOf(each.role, each.states);
        facts.interfaces = each.interfaces;
        EXPECT_EQ(isSettable(facts), each.settable) << each.name;
        EXPECT_FALSE(isSettable(facts, "AXTitle")) << each.name;
    }
}

} // namespace
} // namespace vesk::test
