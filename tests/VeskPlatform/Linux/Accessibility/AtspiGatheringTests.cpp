#include "VeskPlatform/Linux/Accessibility/AtspiGathering.hpp"

#include "VeskPlatform/Linux/Accessibility/AtspiNames.hpp"
#include "tests/VeskPlatform/Linux/Accessibility/AccessibleWorld.hpp"

#include <gmock/gmock.h>

namespace vesk::test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

using AtspiGatheringTests = AccessibleWorld;

TEST_F(AtspiGatheringTests, TheActiveWindowIsTheFocusedOne) {
    application.add(root(), path("hidden"), ATSPI_ROLE_FRAME);
    application.add(root(), path("shown"), ATSPI_ROLE_FRAME, {ATSPI_STATE_SHOWING});
    application.add(root(), path("active"), ATSPI_ROLE_DIALOG, {ATSPI_STATE_SHOWING, ATSPI_STATE_ACTIVE});
    const AccessibilityAnswer answer = read(applicationElement(), {"AXFocusedWindow", "AXMainWindow", "AXWindow"});
    EXPECT_EQ(pathOf(handleIn(answer, "AXFocusedWindow")), path("active"));
    EXPECT_EQ(pathOf(handleIn(answer, "AXMainWindow")), path("shown"));
    EXPECT_EQ(handleIn(answer, "AXWindow"), nullptr);
}

TEST_F(AtspiGatheringTests, AnApplicationMayHaveNoWindow) {
    EXPECT_THAT(read(applicationElement(), {"AXFocusedWindow", "AXMainWindow"}).values, IsEmpty());
}

TEST_F(AtspiGatheringTests, WindowsAndWhatIsInThemHaveNoWindowsOfAnApplication) {
    addElement(ATSPI_ROLE_ENTRY).children.emplace_back(application.name(), path("part"));
    application.objects[path("part")].states = {ATSPI_STATE_ACTIVE, ATSPI_STATE_SHOWING};
    const auto found = element();
    const AccessibilityAnswer answer =
        read(found, {"AXFocusedWindow", "AXMainWindow", "AXWindow", "AXFocusedUIElement"});
    EXPECT_EQ(pathOf(handleIn(answer, "AXWindow")), path("window"));
    EXPECT_EQ(answer.values.size(), 1U);
    EXPECT_EQ(pathOf(handleIn(read(elements(found).at(0), {"AXWindow"}), "AXWindow")), path("window"));
}

TEST_F(AtspiGatheringTests, TheFocusIsSearchedInTheActiveWindowOnly) {
    addElement(ATSPI_ROLE_ENTRY);
    application.objects[path("window")].focused = {{application.name(), path("element")}};
    application.add(root(), path("background"), ATSPI_ROLE_FRAME, {ATSPI_STATE_SHOWING}).focused = {
        {application.name(), path("other")}};
    const auto focus = handleIn(read(applicationElement(), {"AXFocusedUIElement"}), "AXFocusedUIElement");
    EXPECT_EQ(pathOf(focus), path("element"));
    EXPECT_EQ(pathOf(handleIn(read(focus, {"AXWindow"}), "AXWindow")), path("window"));
    EXPECT_EQ(application.countOf("GetMatches"), 1U);
}

TEST_F(AtspiGatheringTests, WithoutAnActiveWindowTheFirstFocusCounts) {
    application.add(root(), path("one"), ATSPI_ROLE_FRAME).focused.emplace();
    application.add(root(), path("two"), ATSPI_ROLE_FRAME).focused = {{application.name(), path("second")}};
    application.add(root(), path("three"), ATSPI_ROLE_FRAME).focused = {{application.name(), path("third")}};
    EXPECT_EQ(pathOf(handleIn(read(applicationElement(), {"AXFocusedUIElement"}), "AXFocusedUIElement")),
              path("second"));
}

TEST_F(AtspiGatheringTests, AFocusThatCannotBeSearchedIsNotThere) {
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

TEST_F(AtspiGatheringTests, ChildrenThatAreNothingAreLeftOut) {
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

TEST_F(AtspiGatheringTests, OfAVeryLongCollectionTheFirstItemsAreTold) {
    FakeAccessible& table = addElement(ATSPI_ROLE_TABLE);
    for (int i = 0; i < 700; ++i) table.children.emplace_back(application.name(), path("cell" + std::to_string(i)));
    table.children[3] = {"", atspi::nullPath};
    const auto items = elements(element());
    ASSERT_EQ(items.size(), 499U);
    EXPECT_EQ(pathOf(items[3]), path("cell4"));
    EXPECT_EQ(pathOf(items[498]), path("cell499"));
    EXPECT_THAT(application.calls(), Not(Contains("GetChildren " + path("element"))));
}

TEST_F(AtspiGatheringTests, ACollectionIsToldWholeWhereItIsNotLong) {
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

TEST_F(AtspiGatheringTests, AScrollPaneHasContents) {
    addElement(ATSPI_ROLE_SCROLL_PANE);
    application.add(path("element"), path("bar"), ATSPI_ROLE_SCROLL_BAR);
    application.add(path("element"), path("page"), ATSPI_ROLE_TEXT);
    const auto pane = element();
    EXPECT_THAT(pathsOf(elements(pane, "AXContents")), ElementsAre(path("page")));
    EXPECT_THAT(pathsOf(elements(pane)), ElementsAre(path("bar"), path("page")));
    EXPECT_EQ(read(pane, {"AXVisibleChildren"}).values.size(), 0U);
}

TEST_F(AtspiGatheringTests, TextIsRead) {
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

TEST_F(AtspiGatheringTests, ANameMayBeThePlaceholder) {
    FakeAccessible& field = addElement(ATSPI_ROLE_ENTRY);
    field.name = "Find";
    const auto found = element();
    EXPECT_EQ(valueIn<std::string>(read(found, {"AXPlaceholderValue"}), "AXPlaceholderValue"), std::nullopt);
    application.change([&] { field.attributes = {{"name-from", "placeholder"}}; });
    EXPECT_EQ(valueIn<std::string>(read(found, {"AXPlaceholderValue"}), "AXPlaceholderValue"), "Find");
    application.change([&] { field.attributes = {{"name-from", "attribute"}}; });
    EXPECT_EQ(valueIn<std::string>(read(found, {"AXPlaceholderValue"}), "AXPlaceholderValue"), std::nullopt);
}

TEST_F(AtspiGatheringTests, APasswordIsNeverAskedFor) {
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

TEST_F(AtspiGatheringTests, ElementsThatSayTheyAreDefunctHaveNothing) {
    addElement(ATSPI_ROLE_ENTRY, {ATSPI_STATE_DEFUNCT, ATSPI_STATE_EDITABLE}).name = "was";
    const auto gone = element();
    const AccessibilityAnswer answer = read(gone, {"AXRole", "AXTitle", "AXSize", "AXChildren", "AXFocused"});
    EXPECT_TRUE(answer.values.empty());
    EXPECT_FALSE(runTask(tree().setValue(gone, "AXValue", "text")));
}

TEST_F(AtspiGatheringTests, AnswersOfOtherTypesAreNone) {
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

} // namespace
} // namespace vesk::test
