#pragma once

#include "VeskPlatform/AccessibilityTree.hpp"
#include "tests/fakes/RunTask.hpp"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace vesk::test {

/// What every AccessibilityTree owes. A `World` has a `tree()`, a `process()` with one window, `addField(title)` for
/// editable fields in that, all before the tree is used, and `refuseValues()`.
template <class World> class AccessibilityTreeContract : public ::testing::Test {
protected:
    World world;

    AccessibilityElementHandle application(std::int32_t process) {
        return runTask(world.tree().applicationElement(process));
    }
    std::vector<AccessibilityAnswer> read(std::vector<AccessibilityElementHandle> elements, AccessibilityQuery query) {
        return runTask(world.tree().read(std::move(elements), std::move(query)));
    }
    std::vector<AccessibilityElementHandle> children(const AccessibilityElementHandle& element) {
        std::vector<AccessibilityElementHandle> found;
        const auto answers = read({element}, {{"AXChildren"}, {}});
        for (const AccessibilityValue& item :
             std::get<AccessibilityValue::Array>(answers.at(0).values.at("AXChildren").value))
            found.push_back(std::get<AccessibilityElementHandle>(item.value));
        return found;
    }
    std::vector<AccessibilityElementHandle> fields() { return children(children(application(world.process())).at(0)); }
    static std::string title(const AccessibilityAnswer& answer) {
        return std::get<std::string>(answer.values.at("AXTitle").value);
    }
};

TYPED_TEST_SUITE_P(AccessibilityTreeContract);

TYPED_TEST_P(AccessibilityTreeContract, AProcessWithoutElementsHasARootWithoutValues) {
    const auto root = this->application(1);
    ASSERT_NE(root, nullptr);
    const auto answers = this->read({root}, {{"AXTitle", "AXChildren", "AXFocusedUIElement"}, {"AXValue"}});
    ASSERT_EQ(answers.size(), 1U);
    EXPECT_TRUE(answers[0].values.empty());
    EXPECT_TRUE(answers[0].settable.empty());
}

TYPED_TEST_P(AccessibilityTreeContract, AnElementHasOneHandle) {
    this->world.addField("one");
    const auto root = this->application(this->world.process());
    EXPECT_EQ(this->application(this->world.process()), root);
    const auto window = this->children(root).at(0);
    EXPECT_EQ(this->children(root).at(0), window);
    EXPECT_NE(window, root);
}

TYPED_TEST_P(AccessibilityTreeContract, AnswersStandInTheOrderOfTheElements) {
    this->world.addField("one");
    this->world.addField("two");
    const auto fields = this->fields();
    ASSERT_EQ(fields.size(), 2U);
    const auto answers = this->read({fields[1], fields[0], fields[1]}, {{"AXTitle"}, {}});
    ASSERT_EQ(answers.size(), 3U);
    EXPECT_EQ(this->title(answers[0]), "two");
    EXPECT_EQ(this->title(answers[1]), "one");
    EXPECT_EQ(this->title(answers[2]), "two");
    EXPECT_TRUE(this->read({}, {{"AXTitle"}, {}}).empty());
}

TYPED_TEST_P(AccessibilityTreeContract, OnlyWhatWasAskedIsAnswered) {
    this->world.addField("one");
    const auto field = this->fields().at(0);
    const auto titled = this->read({field}, {{"AXTitle", "AXUnheardOf"}, {}}).at(0);
    EXPECT_EQ(titled.values.size(), 1U);
    EXPECT_TRUE(titled.settable.empty());
    const auto settable = this->read({field}, {{}, {"AXValue", "AXUnheardOf"}}).at(0);
    EXPECT_TRUE(settable.values.empty());
    EXPECT_EQ(settable.settable.size(), 1U);
    EXPECT_TRUE(settable.settable.contains("AXValue"));
}

TYPED_TEST_P(AccessibilityTreeContract, ValuesAreTakenOrNot) {
    this->world.addField("one");
    const auto field = this->fields().at(0);
    EXPECT_TRUE(runTask(this->world.tree().setValue(field, "AXValue", "text")));
    this->world.refuseValues();
    EXPECT_FALSE(runTask(this->world.tree().setValue(field, "AXValue", "text")));
}

REGISTER_TYPED_TEST_SUITE_P(AccessibilityTreeContract, AProcessWithoutElementsHasARootWithoutValues,
                            AnElementHasOneHandle, AnswersStandInTheOrderOfTheElements, OnlyWhatWasAskedIsAnswered,
                            ValuesAreTakenOrNot);

} // namespace vesk::test
