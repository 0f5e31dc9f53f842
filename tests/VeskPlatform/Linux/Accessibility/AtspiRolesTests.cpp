#include "VeskPlatform/Linux/Accessibility/AtspiRoles.hpp"

#include <gtest/gtest.h>
#include <set>

namespace vesk {

void PrintTo(const AxRole& role, std::ostream* stream) { *stream << role.role << " " << role.subrole; }

} // namespace vesk

namespace vesk::test {
namespace {

AtspiStates statesOf(std::initializer_list<AtspiStateType> states) {
    AtspiStates all;
    for (const AtspiStateType state : states) all.bits |= std::uint64_t{1} << state;
    return all;
}

TEST(AtspiRolesTests, RolesHaveTheirNames) {
    const struct {
        AtspiRole role;
        std::string_view name, subrole;
    } cases[] = {
        {ATSPI_ROLE_TEXT, "AXTextField", ""},
        {ATSPI_ROLE_ENTRY, "AXTextField", ""},
        {ATSPI_ROLE_PASSWORD_TEXT, "AXTextField", "AXSecureTextField"},
        {ATSPI_ROLE_TERMINAL, "AXTextArea", ""},
        {ATSPI_ROLE_PUSH_BUTTON, "AXButton", ""},
        {ATSPI_ROLE_TOGGLE_BUTTON, "AXCheckBox", "AXToggle"},
        {ATSPI_ROLE_CHECK_BOX, "AXCheckBox", ""},
        {ATSPI_ROLE_RADIO_BUTTON, "AXRadioButton", ""},
        {ATSPI_ROLE_COMBO_BOX, "AXPopUpButton", ""},
        {ATSPI_ROLE_LABEL, "AXStaticText", ""},
        {ATSPI_ROLE_LINK, "AXLink", ""},
        {ATSPI_ROLE_SLIDER, "AXSlider", ""},
        {ATSPI_ROLE_SPIN_BUTTON, "AXIncrementor", ""},
        {ATSPI_ROLE_SCROLL_PANE, "AXScrollArea", ""},
        {ATSPI_ROLE_TREE_TABLE, "AXOutline", ""},
        {ATSPI_ROLE_FRAME, "AXWindow", "AXStandardWindow"},
        {ATSPI_ROLE_DIALOG, "AXWindow", "AXDialog"},
        {ATSPI_ROLE_APPLICATION, "AXApplication", ""},
        {ATSPI_ROLE_DOCUMENT_WEB, "AXWebArea", ""},
        {ATSPI_ROLE_PANEL, "AXGroup", ""},
        {ATSPI_ROLE_PUSH_BUTTON_MENU, "AXMenuButton", ""},
        {ATSPI_ROLE_UNKNOWN, "AXUnknown", ""},
        {ATSPI_ROLE_INVALID, "AXUnknown", ""},
        {ATSPI_ROLE_EXTENDED, "AXUnknown", ""},
    };
    for (const auto& each : cases) EXPECT_EQ(axRoleOf(each.role, {}), (AxRole{each.name, each.subrole})) << each.role;
}

TEST(AtspiRolesTests, EveryRoleOfTheInterfaceIsKnown) {
    const std::set<std::uint32_t> unnamed = {ATSPI_ROLE_INVALID, ATSPI_ROLE_UNKNOWN, ATSPI_ROLE_EXTENDED,
                                             ATSPI_ROLE_REDUNDANT_OBJECT};
    for (std::uint32_t role = 0; role < ATSPI_ROLE_LAST_DEFINED; ++role)
        EXPECT_EQ(axRoleOf(role, {}).role == "AXUnknown", unnamed.contains(role)) << role;
}

TEST(AtspiRolesTests, RolesOfLaterVersionsAreUnknown) {
    for (const std::uint32_t role : {std::uint32_t{ATSPI_ROLE_LAST_DEFINED}, 1000U, UINT32_MAX})
        EXPECT_EQ(axRoleOf(role, {}), (AxRole{"AXUnknown", ""})) << role;
}

TEST(AtspiRolesTests, FieldsOfSeveralLinesAreAreas) {
    const AtspiStates multiLine = statesOf({ATSPI_STATE_MULTI_LINE});
    for (const AtspiRole role : {ATSPI_ROLE_TEXT, ATSPI_ROLE_ENTRY})
        EXPECT_EQ(axRoleOf(role, multiLine), (AxRole{"AXTextArea", ""})) << role;
    EXPECT_EQ(axRoleOf(ATSPI_ROLE_PASSWORD_TEXT, multiLine), (AxRole{"AXTextField", "AXSecureTextField"}));
    EXPECT_EQ(axRoleOf(ATSPI_ROLE_PUSH_BUTTON, multiLine), (AxRole{"AXButton", ""}));
}

TEST(AtspiRolesTests, EditablePiecesOfDocumentsThatTakeTheFocusAreAreas) {
    const AtspiStates typedInto = statesOf({ATSPI_STATE_EDITABLE, ATSPI_STATE_FOCUSABLE});
    for (const AtspiRole role : {ATSPI_ROLE_PARAGRAPH, ATSPI_ROLE_SECTION, ATSPI_ROLE_DOCUMENT_WEB}) {
        EXPECT_EQ(axRoleOf(role, typedInto).role, "AXTextArea") << role;
        EXPECT_NE(axRoleOf(role, statesOf({ATSPI_STATE_EDITABLE})).role, "AXTextArea") << role;
        EXPECT_NE(axRoleOf(role, statesOf({ATSPI_STATE_FOCUSABLE})).role, "AXTextArea") << role;
    }
    EXPECT_EQ(axRoleOf(ATSPI_ROLE_TABLE_CELL, typedInto).role, "AXCell");
}

TEST(AtspiRolesTests, RolesHoldTheirKindsOfValues) {
    const struct {
        AtspiRole role;
        bool text, number, takesNumber, check, items;
    } cases[] = {
        {ATSPI_ROLE_ENTRY, true, false, false, false, false},
        {ATSPI_ROLE_PASSWORD_TEXT, true, false, false, false, false},
        {ATSPI_ROLE_TERMINAL, true, false, false, false, false},
        {ATSPI_ROLE_AUTOCOMPLETE, true, false, false, false, false},
        {ATSPI_ROLE_LABEL, false, false, false, false, false},
        {ATSPI_ROLE_SLIDER, false, true, true, false, false},
        {ATSPI_ROLE_SPIN_BUTTON, false, true, true, false, false},
        {ATSPI_ROLE_SCROLL_BAR, false, true, true, false, false},
        {ATSPI_ROLE_SPLIT_PANE, false, true, true, false, false},
        {ATSPI_ROLE_PROGRESS_BAR, false, true, false, false, false},
        {ATSPI_ROLE_LEVEL_BAR, false, true, false, false, false},
        {ATSPI_ROLE_CHECK_BOX, false, false, false, true, false},
        {ATSPI_ROLE_TOGGLE_BUTTON, false, false, false, true, false},
        {ATSPI_ROLE_PAGE_TAB, false, false, false, true, false},
        {ATSPI_ROLE_LIST, false, false, false, false, true},
        {ATSPI_ROLE_LIST_BOX, false, false, false, false, true},
        {ATSPI_ROLE_TABLE, false, false, false, false, true},
        {ATSPI_ROLE_TREE, false, false, false, false, true},
        {ATSPI_ROLE_PANEL, false, false, false, false, false},
    };
    for (const auto& each : cases) {
        const AxRole role = axRoleOf(each.role, {});
        EXPECT_EQ(holdsText(role), each.text) << each.role;
        EXPECT_EQ(holdsNumber(role), each.number) << each.role;
        EXPECT_EQ(takesNumber(role), each.takesNumber) << each.role;
        EXPECT_EQ(holdsCheck(role), each.check) << each.role;
        EXPECT_EQ(holdsItems(role), each.items) << each.role;
    }
}

} // namespace
} // namespace vesk::test
