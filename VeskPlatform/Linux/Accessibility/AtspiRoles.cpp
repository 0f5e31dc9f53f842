#include "VeskPlatform/Linux/Accessibility/AtspiRoles.hpp"

#include <algorithm>
#include <array>

namespace vesk {

namespace {

struct RoleRow {
    AtspiRole role;
    AxRole ax;
};

constexpr RoleRow roleTable[] = {
    {ATSPI_ROLE_ACCELERATOR_LABEL, {"AXStaticText", ""}},
    {ATSPI_ROLE_ALERT, {"AXWindow", "AXDialog"}},
    {ATSPI_ROLE_ANIMATION, {"AXImage", ""}},
    {ATSPI_ROLE_ARROW, {"AXImage", ""}},
    {ATSPI_ROLE_CALENDAR, {"AXGroup", ""}},
    {ATSPI_ROLE_CANVAS, {"AXGroup", ""}},
    {ATSPI_ROLE_CHECK_BOX, {"AXCheckBox", ""}},
    {ATSPI_ROLE_CHECK_MENU_ITEM, {"AXMenuItem", ""}},
    {ATSPI_ROLE_COLOR_CHOOSER, {"AXColorWell", ""}},
    {ATSPI_ROLE_COLUMN_HEADER, {"AXButton", "AXSortButton"}},
    {ATSPI_ROLE_COMBO_BOX, {"AXPopUpButton", ""}},
    {ATSPI_ROLE_DATE_EDITOR, {"AXDateField", ""}},
    {ATSPI_ROLE_DESKTOP_ICON, {"AXImage", ""}},
    {ATSPI_ROLE_DESKTOP_FRAME, {"AXGroup", ""}},
    {ATSPI_ROLE_DIAL, {"AXSlider", ""}},
    {ATSPI_ROLE_DIALOG, {"AXWindow", "AXDialog"}},
    {ATSPI_ROLE_DIRECTORY_PANE, {"AXGroup", ""}},
    {ATSPI_ROLE_DRAWING_AREA, {"AXGroup", ""}},
    {ATSPI_ROLE_FILE_CHOOSER, {"AXWindow", "AXDialog"}},
    {ATSPI_ROLE_FILLER, {"AXGroup", ""}},
    {ATSPI_ROLE_FOCUS_TRAVERSABLE, {"AXGroup", ""}},
    {ATSPI_ROLE_FONT_CHOOSER, {"AXWindow", "AXDialog"}},
    {ATSPI_ROLE_FRAME, {"AXWindow", "AXStandardWindow"}},
    {ATSPI_ROLE_GLASS_PANE, {"AXGroup", ""}},
    {ATSPI_ROLE_HTML_CONTAINER, {"AXWebArea", ""}},
    {ATSPI_ROLE_ICON, {"AXImage", ""}},
    {ATSPI_ROLE_IMAGE, {"AXImage", ""}},
    {ATSPI_ROLE_INTERNAL_FRAME, {"AXGroup", ""}},
    {ATSPI_ROLE_LABEL, {"AXStaticText", ""}},
    {ATSPI_ROLE_LAYERED_PANE, {"AXGroup", ""}},
    {ATSPI_ROLE_LIST, {"AXList", ""}},
    {ATSPI_ROLE_LIST_ITEM, {"AXCell", ""}},
    {ATSPI_ROLE_MENU, {"AXMenu", ""}},
    {ATSPI_ROLE_MENU_BAR, {"AXMenuBar", ""}},
    {ATSPI_ROLE_MENU_ITEM, {"AXMenuItem", ""}},
    {ATSPI_ROLE_OPTION_PANE, {"AXGroup", ""}},
    {ATSPI_ROLE_PAGE_TAB, {"AXRadioButton", "AXTabButton"}},
    {ATSPI_ROLE_PAGE_TAB_LIST, {"AXTabGroup", ""}},
    {ATSPI_ROLE_PANEL, {"AXGroup", ""}},
    {ATSPI_ROLE_PASSWORD_TEXT, {"AXTextField", "AXSecureTextField"}},
    {ATSPI_ROLE_POPUP_MENU, {"AXMenu", ""}},
    {ATSPI_ROLE_PROGRESS_BAR, {"AXProgressIndicator", ""}},
    {ATSPI_ROLE_PUSH_BUTTON, {"AXButton", ""}},
    {ATSPI_ROLE_RADIO_BUTTON, {"AXRadioButton", ""}},
    {ATSPI_ROLE_RADIO_MENU_ITEM, {"AXMenuItem", ""}},
    {ATSPI_ROLE_ROOT_PANE, {"AXGroup", ""}},
    {ATSPI_ROLE_ROW_HEADER, {"AXCell", ""}},
    {ATSPI_ROLE_SCROLL_BAR, {"AXScrollBar", ""}},
    {ATSPI_ROLE_SCROLL_PANE, {"AXScrollArea", ""}},
    {ATSPI_ROLE_SEPARATOR, {"AXSplitter", ""}},
    {ATSPI_ROLE_SLIDER, {"AXSlider", ""}},
    {ATSPI_ROLE_SPIN_BUTTON, {"AXIncrementor", ""}},
    {ATSPI_ROLE_SPLIT_PANE, {"AXSplitGroup", ""}},
    {ATSPI_ROLE_STATUS_BAR, {"AXGroup", ""}},
    {ATSPI_ROLE_TABLE, {"AXTable", ""}},
    {ATSPI_ROLE_TABLE_CELL, {"AXCell", ""}},
    {ATSPI_ROLE_TABLE_COLUMN_HEADER, {"AXButton", "AXSortButton"}},
    {ATSPI_ROLE_TABLE_ROW_HEADER, {"AXCell", ""}},
    {ATSPI_ROLE_TEAROFF_MENU_ITEM, {"AXMenuItem", ""}},
    {ATSPI_ROLE_TERMINAL, {"AXTextArea", ""}},
    {ATSPI_ROLE_TEXT, {"AXTextField", ""}},
    {ATSPI_ROLE_TOGGLE_BUTTON, {"AXCheckBox", "AXToggle"}},
    {ATSPI_ROLE_TOOL_BAR, {"AXToolbar", ""}},
    {ATSPI_ROLE_TOOL_TIP, {"AXHelpTag", ""}},
    {ATSPI_ROLE_TREE, {"AXOutline", ""}},
    {ATSPI_ROLE_TREE_TABLE, {"AXOutline", ""}},
    {ATSPI_ROLE_VIEWPORT, {"AXGroup", ""}},
    {ATSPI_ROLE_WINDOW, {"AXWindow", "AXUnknown"}},
    {ATSPI_ROLE_HEADER, {"AXGroup", ""}},
    {ATSPI_ROLE_FOOTER, {"AXGroup", ""}},
    {ATSPI_ROLE_PARAGRAPH, {"AXGroup", ""}},
    {ATSPI_ROLE_RULER, {"AXRuler", ""}},
    {ATSPI_ROLE_APPLICATION, {"AXApplication", ""}},
    {ATSPI_ROLE_AUTOCOMPLETE, {"AXComboBox", ""}},
    {ATSPI_ROLE_EDITBAR, {"AXTextField", ""}},
    {ATSPI_ROLE_EMBEDDED, {"AXGroup", ""}},
    {ATSPI_ROLE_ENTRY, {"AXTextField", ""}},
    {ATSPI_ROLE_CHART, {"AXImage", ""}},
    {ATSPI_ROLE_CAPTION, {"AXStaticText", ""}},
    {ATSPI_ROLE_DOCUMENT_FRAME, {"AXGroup", "AXDocument"}},
    {ATSPI_ROLE_HEADING, {"AXHeading", ""}},
    {ATSPI_ROLE_PAGE, {"AXGroup", ""}},
    {ATSPI_ROLE_SECTION, {"AXGroup", ""}},
    {ATSPI_ROLE_REDUNDANT_OBJECT, {"AXUnknown", ""}},
    {ATSPI_ROLE_FORM, {"AXGroup", ""}},
    {ATSPI_ROLE_LINK, {"AXLink", ""}},
    {ATSPI_ROLE_INPUT_METHOD_WINDOW, {"AXWindow", "AXUnknown"}},
    {ATSPI_ROLE_TABLE_ROW, {"AXRow", "AXTableRow"}},
    {ATSPI_ROLE_TREE_ITEM, {"AXRow", "AXOutlineRow"}},
    {ATSPI_ROLE_DOCUMENT_SPREADSHEET, {"AXGroup", "AXDocument"}},
    {ATSPI_ROLE_DOCUMENT_PRESENTATION, {"AXGroup", "AXDocument"}},
    {ATSPI_ROLE_DOCUMENT_TEXT, {"AXGroup", "AXDocument"}},
    {ATSPI_ROLE_DOCUMENT_WEB, {"AXWebArea", ""}},
    {ATSPI_ROLE_DOCUMENT_EMAIL, {"AXGroup", "AXDocument"}},
    {ATSPI_ROLE_COMMENT, {"AXGroup", ""}},
    {ATSPI_ROLE_LIST_BOX, {"AXList", ""}},
    {ATSPI_ROLE_GROUPING, {"AXGroup", ""}},
    {ATSPI_ROLE_IMAGE_MAP, {"AXImage", ""}},
    {ATSPI_ROLE_NOTIFICATION, {"AXGroup", "AXApplicationAlert"}},
    {ATSPI_ROLE_INFO_BAR, {"AXGroup", "AXApplicationStatus"}},
    {ATSPI_ROLE_LEVEL_BAR, {"AXLevelIndicator", ""}},
    {ATSPI_ROLE_TITLE_BAR, {"AXGroup", ""}},
    {ATSPI_ROLE_BLOCK_QUOTE, {"AXGroup", ""}},
    {ATSPI_ROLE_AUDIO, {"AXGroup", "AXAudio"}},
    {ATSPI_ROLE_VIDEO, {"AXGroup", "AXVideo"}},
    {ATSPI_ROLE_DEFINITION, {"AXGroup", "AXDefinition"}},
    {ATSPI_ROLE_ARTICLE, {"AXGroup", "AXDocumentArticle"}},
    {ATSPI_ROLE_LANDMARK, {"AXGroup", "AXLandmarkRegion"}},
    {ATSPI_ROLE_LOG, {"AXGroup", "AXApplicationLog"}},
    {ATSPI_ROLE_MARQUEE, {"AXGroup", "AXApplicationMarquee"}},
    {ATSPI_ROLE_MATH, {"AXGroup", "AXDocumentMath"}},
    {ATSPI_ROLE_RATING, {"AXLevelIndicator", "AXRatingIndicator"}},
    {ATSPI_ROLE_TIMER, {"AXGroup", "AXApplicationTimer"}},
    {ATSPI_ROLE_STATIC, {"AXStaticText", ""}},
    {ATSPI_ROLE_MATH_FRACTION, {"AXGroup", "AXMathFraction"}},
    {ATSPI_ROLE_MATH_ROOT, {"AXGroup", "AXMathRoot"}},
    {ATSPI_ROLE_SUBSCRIPT, {"AXGroup", "AXSubscriptStyleGroup"}},
    {ATSPI_ROLE_SUPERSCRIPT, {"AXGroup", "AXSuperscriptStyleGroup"}},
    {ATSPI_ROLE_DESCRIPTION_LIST, {"AXList", "AXDescriptionList"}},
    {ATSPI_ROLE_DESCRIPTION_TERM, {"AXGroup", "AXTerm"}},
    {ATSPI_ROLE_DESCRIPTION_VALUE, {"AXGroup", "AXDescription"}},
    {ATSPI_ROLE_FOOTNOTE, {"AXGroup", ""}},
    {ATSPI_ROLE_CONTENT_DELETION, {"AXGroup", "AXDeleteStyleGroup"}},
    {ATSPI_ROLE_CONTENT_INSERTION, {"AXGroup", "AXInsertStyleGroup"}},
    {ATSPI_ROLE_MARK, {"AXGroup", ""}},
    {ATSPI_ROLE_SUGGESTION, {"AXGroup", ""}},
    {ATSPI_ROLE_PUSH_BUTTON_MENU, {"AXMenuButton", ""}},
};

constexpr AxRole unknownRole{"AXUnknown", ""};

/// Roles by their numbers.
constexpr auto rolesByNumber = [] {
    std::array<AxRole, ATSPI_ROLE_LAST_DEFINED> roles{};
    roles.fill(unknownRole);
    for (const RoleRow& row : roleTable) roles[row.role] = row.ax;
    return roles;
}();

/// What an editable document consists of; the one that takes the focus is what the user types into.
bool isPieceOfDocument(std::uint32_t role) {
    constexpr AtspiRole pieces[] = {ATSPI_ROLE_PARAGRAPH,      ATSPI_ROLE_SECTION,       ATSPI_ROLE_HEADING,
                                    ATSPI_ROLE_BLOCK_QUOTE,    ATSPI_ROLE_ARTICLE,       ATSPI_ROLE_DOCUMENT_FRAME,
                                    ATSPI_ROLE_DOCUMENT_TEXT,  ATSPI_ROLE_DOCUMENT_WEB,  ATSPI_ROLE_DOCUMENT_EMAIL,
                                    ATSPI_ROLE_DOCUMENT_FRAME, ATSPI_ROLE_HTML_CONTAINER};
    return std::ranges::find(pieces, role) != std::end(pieces);
}

template <std::size_t count> bool isOneOf(const AxRole& role, const std::array<std::string_view, count>& names) {
    return std::ranges::find(names, role.role) != names.end();
}

} // namespace

AxRole axRoleOf(std::uint32_t role, AtspiStates states) {
    const AxRole ax = role < rolesByNumber.size() ? rolesByNumber[role] : unknownRole;
    if (ax.role == "AXTextField" && ax.subrole.empty() && states.has(ATSPI_STATE_MULTI_LINE)) return {"AXTextArea", ""};
    if (isPieceOfDocument(role) && states.has(ATSPI_STATE_EDITABLE) && states.has(ATSPI_STATE_FOCUSABLE))
        return {"AXTextArea", ""};
    return ax;
}

bool holdsText(const AxRole& role) {
    return isOneOf(role, std::to_array<std::string_view>({"AXTextField", "AXTextArea", "AXComboBox", "AXDateField"}));
}

bool takesNumber(const AxRole& role) {
    return isOneOf(role, std::to_array<std::string_view>(
                             {"AXSlider", "AXIncrementor", "AXScrollBar", "AXSplitter", "AXSplitGroup"}));
}

bool holdsNumber(const AxRole& role) {
    return takesNumber(role)
           || isOneOf(role, std::to_array<std::string_view>({"AXProgressIndicator", "AXLevelIndicator"}));
}

bool holdsCheck(const AxRole& role) {
    return isOneOf(role, std::to_array<std::string_view>({"AXCheckBox", "AXRadioButton"}));
}

bool holdsItems(const AxRole& role) {
    return isOneOf(role, std::to_array<std::string_view>({"AXList", "AXTable", "AXOutline"}));
}

} // namespace vesk
