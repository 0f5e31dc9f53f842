#include "VeskShellCore/AccessibilityReading.hpp"

#include "tests/fakes/FakeAccessibility.hpp"
#include "tests/fakes/RunTask.hpp"

#include <gtest/gtest.h>

namespace vesk::test {
namespace {

using Text = std::optional<std::string>;

const FakeElementHandle someElement = fakeElement();

AccessibilityAnswer answerOf(AccessibilityValue value) { return {{{"A", std::move(value)}}, {}}; }

struct TypedCase {
    std::string name;
    AccessibilityValue value;
    Text text;
    std::optional<bool> flag;
    bool isElement = false, isPoint = false, isSize = false;
};

const TypedCase typedCases[] = {
    {"text", {"abc"}, "abc", {}},
    {"empty text", {""}, "", {}},
    {"text that looks like a flag", {"true"}, "true", {}},
    {"true", {true}, {}, true},
    {"false", {false}, {}, false},
    {"whole number", {std::int64_t{-42}}, "-42", true},
    {"zero", {std::int64_t{0}}, "0", false},
    {"largest whole number", {std::int64_t{9223372036854775807}}, "9223372036854775807", true},
    {"real number", {0.5}, "0.5", true},
    {"real number that is whole", {3.0}, "3", true},
    {"real zero", {0.0}, "0", false},
    {"real number with many zeros", {100000.0}, "100000", true},
    {"large real number", {-2000000000000000.0}, "-2000000000000000", true},
    {"very large real number", {1e16}, "1e+16", true},
    {"small real number", {0.0001}, "0.0001", true},
    {"very small real number", {0.00001}, "1e-05", true},
    {"real number with many digits", {-1234.0001220703125}, "-1234.0001220703125", true},
    {"point", {ScreenPoint{1, 2}}, {}, {}, false, true, false},
    {"size", {ScreenSize{1, 2}}, {}, {}, false, false, true},
    {"element", elementValue(someElement), {}, {}, true, false, false},
    {"list", elementsValue({someElement}), {}, {}},
};

TEST(AccessibilityReading, AReadCountsOnlyValuesOfItsType) {
    for (const TypedCase& expected : typedCases) {
        const AccessibilityAnswer answer = answerOf(expected.value);
        EXPECT_EQ(copyStringAttribute(answer, "A"), expected.text) << expected.name;
        EXPECT_EQ(copyBoolAttribute(answer, "A"), expected.flag) << expected.name;
        EXPECT_EQ(copyElementAttribute(answer, "A").has_value(), expected.isElement) << expected.name;
        EXPECT_EQ(copyCGPointAttribute(answer, "A").has_value(), expected.isPoint) << expected.name;
        EXPECT_EQ(copyCGSizeAttribute(answer, "A").has_value(), expected.isSize) << expected.name;
        EXPECT_EQ(copyElementArrayAttribute(answer, "A").size(), expected.name == "list" ? 1U : 0U) << expected.name;
    }
}

TEST(AccessibilityReading, ValuesAreGivenAsTheyAre) {
    EXPECT_EQ(copyElementAttribute(answerOf(elementValue(someElement)), "A"), someElement);
    EXPECT_EQ(copyCGPointAttribute(answerOf({ScreenPoint{-1.5, 2}}), "A"), (ScreenPoint{-1.5, 2}));
    EXPECT_EQ(copyCGSizeAttribute(answerOf({ScreenSize{3, 4.5}}), "A"), (ScreenSize{3, 4.5}));
}

TEST(AccessibilityReading, AnAbsentAttributeGivesNothing) {
    const AccessibilityAnswer answer = answerOf({"abc"});
    EXPECT_EQ(copyStringAttribute(answer, "B"), std::nullopt);
    EXPECT_EQ(copyBoolAttribute(answer, "B"), std::nullopt);
    EXPECT_EQ(copyElementAttribute(answer, "B"), std::nullopt);
    EXPECT_EQ(copyCGPointAttribute(answer, "B"), std::nullopt);
    EXPECT_EQ(copyCGSizeAttribute(answer, "B"), std::nullopt);
    EXPECT_TRUE(copyElementArrayAttribute(answer, "B").empty());
    EXPECT_FALSE(isAttributeSettable(answer, "A"));
    EXPECT_TRUE(isAttributeSettable({{}, {"A"}}, "A"));
}

TEST(AccessibilityReading, ItemsOfAListThatAreNoElementsAreDropped) {
    const auto first = fakeElement(), second = fakeElement();
    const AccessibilityValue::Array items{{"x"}, elementValue(second), {true}, elementValue(first)};
    EXPECT_EQ(copyElementArrayAttribute(answerOf({items}), "A"),
              (std::vector<AccessibilityElementHandle>{second, first}));
}

TEST(AccessibilityReading, EditableIsInferredFromRoleAndSubrole) {
    struct Case {
        Text role, subrole;
        bool editable;
    };
    const Case cases[] = {
        {"AXTextField", {}, true},
        {"AXTextArea", {}, true},
        {"AXSearchField", {}, true},
        {"myTEXTFIELDx", {}, true},
        {"AXButton", "AXSearchField", true},
        {{}, "AXSecureTextField", true},
        {{}, "context", true},
        {"AXStaticText", {}, false},
        {"AXSearch", {}, false},
        {"AXButton", "AXCloseButton", false},
        {{}, {}, false},
    };
    for (const Case& expected : cases)
        EXPECT_EQ(inferEditable(expected.role, expected.subrole), expected.editable)
            << expected.role.value_or("none") << ", " << expected.subrole.value_or("none");
}

std::string repeated(const std::string& piece, std::size_t count) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i) text += piece;
    return text;
}

TEST(AccessibilityReading, APreviewIsOneShortLine) {
    struct Case {
        std::string name;
        Text text, preview;
    };
    const std::string family = "\U0001F468\u200D\U0001F469\u200D\U0001F467";
    const Case cases[] = {
        {"absent", {}, {}},
        {"empty", "", {}},
        {"blanks and line feeds", " \n \t\n", {}},
        {"trimmed", "\n  a b \t", "a b"},
        {"line feeds", "a\nb\n\nc", "a b  c"},
        {"160 characters", repeated("x", 160), repeated("x", 160)},
        {"161 characters", repeated("x", 161), repeated("x", 159) + "…"},
        {"161 with the blanks at its ends", " " + repeated("x", 160) + "\n", repeated("x", 160)},
        {"160 families", repeated(family, 160), repeated(family, 160)},
        {"161 families", repeated(family, 161), repeated(family, 159) + "…"},
        {"ill-formed", "a\xff", "a\uFFFD"},
    };
    for (const Case& expected : cases) EXPECT_EQ(previewOf(expected.text), expected.preview) << expected.name;
}

TEST(AccessibilityReading, AnElementIsReadAtOnce) {
    FakeAccessibilityTree tree;
    const auto element = fakeElement();
    element->withText("AXRole", "r").withText("AXTitle", "t").withSettable("AXValue").withSettable("AXTitle");
    const auto answer = runTask(readElement(tree, element, {{"AXRole", "AXSubrole"}, {"AXValue"}}));
    EXPECT_EQ(copyStringAttribute(answer, "AXRole"), "r");
    EXPECT_EQ(answer.values.size(), 1U);
    EXPECT_EQ(answer.settable, (std::set<std::string, std::less<>>{"AXValue"}));
    EXPECT_EQ(tree.visited.size(), 1U);
}

} // namespace
} // namespace vesk::test
