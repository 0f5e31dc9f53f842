#include "VeskPlatform/Linux/Accessibility/AtspiAttributes.hpp"

#include "VeskPlatform/Linux/Accessibility/AtspiNames.hpp"

#include <algorithm>
#include <limits>
#include <string_view>
#include <utility>

namespace vesk {

namespace {

using Value = std::optional<AccessibilityValue>;
using Fact = AtspiFact;

/// Made in its place: g++ 12 takes a variant that is moved for one that was never set.
template <class T> Value valueOf(T value) { return Value(std::in_place, std::move(value)); }

Value textValue(const std::optional<std::string>& text) {
    return text && !text->empty() ? valueOf(*text) : std::nullopt;
}

Value elementValue(const AtspiElementHandle& element) {
    return element ? valueOf(AccessibilityElementHandle(element)) : std::nullopt;
}

/// Browsers and toolkits write the same thing under several names; the first that says something counts.
std::optional<std::string> attributeOf(const AtspiFacts& facts, std::initializer_list<const char*> names) {
    for (const char* name : names)
        if (const auto found = facts.attributes.find(name); found != facts.attributes.end() && !found->second.empty())
            return found->second;
    return std::nullopt;
}

bool isSearchField(const AtspiFacts& facts) {
    const auto role = attributeOf(facts, {"xml-roles"});
    return attributeOf(facts, {"text-input-type"}) == "search"
           || (role && role->find("searchbox") != std::string::npos);
}

Value roleValue(const AtspiElement&, const AtspiFacts& facts) {
    const auto ax = facts.axRole();
    return ax ? valueOf(std::string(ax->role)) : std::nullopt;
}

Value subroleValue(const AtspiElement&, const AtspiFacts& facts) {
    const auto ax = facts.axRole();
    if (!ax) return std::nullopt;
    if (ax->role == "AXTextField" && ax->subrole.empty() && isSearchField(facts))
        return valueOf(std::string("AXSearchField"));
    return textValue(std::string(ax->subrole));
}

Value roleDescription(const AtspiElement&, const AtspiFacts& facts) { return textValue(facts.roleName); }
Value title(const AtspiElement&, const AtspiFacts& facts) { return textValue(facts.name); }
Value description(const AtspiElement&, const AtspiFacts& facts) { return textValue(facts.description); }

Value identifierValue(const AtspiElement&, const AtspiFacts& facts) {
    const Value own = textValue(facts.identifier);
    return own ? own : textValue(attributeOf(facts, {"id"}));
}

Value placeholder(const AtspiElement&, const AtspiFacts& facts) {
    const auto own = attributeOf(facts, {"placeholder-text", "placeholder"});
    return textValue(!own && facts.isNamedByPlaceholder() ? facts.name : own);
}

/// 1 for yes, 0 for no, 2 for partly.
std::int64_t checkMark(const AtspiFacts& facts) {
    if (facts.has(ATSPI_STATE_INDETERMINATE)) return 2;
    if (facts.role == ATSPI_ROLE_PAGE_TAB) return facts.has(ATSPI_STATE_SELECTED) ? 1 : 0;
    return facts.has(ATSPI_STATE_CHECKED) || facts.has(ATSPI_STATE_PRESSED) ? 1 : 0;
}

Value currentValue(const AtspiElement&, const AtspiFacts& facts) {
    const auto ax = facts.axRole();
    if (!ax) return std::nullopt;
    if (facts.number) return valueOf(*facts.number);
    if (facts.text) return valueOf(*facts.text);
    if (holdsCheck(*ax)) return valueOf(checkMark(facts));
    return ax->role == "AXStaticText" ? textValue(facts.name) : std::nullopt;
}

Value selectedText(const AtspiElement&, const AtspiFacts& facts) { return textValue(facts.selection); }

bool isReadOnly(const AtspiFacts& facts) {
    return !facts.has(ATSPI_STATE_EDITABLE) || facts.has(ATSPI_STATE_READ_ONLY);
}

/// Only of elements with text: of others nobody asks whether they are edited.
Value editable(const AtspiElement&, const AtspiFacts& facts) {
    return facts.hasText() ? valueOf(!isReadOnly(facts)) : std::nullopt;
}

Value focused(const AtspiElement&, const AtspiFacts& facts) {
    return facts.states ? valueOf(facts.has(ATSPI_STATE_FOCUSED)) : std::nullopt;
}

/// Toolkits give negative sizes, or the least of all places, for what is not on the screen.
std::optional<AtspiExtents> shownExtents(const AtspiFacts& facts) {
    constexpr std::int32_t nowhere = std::numeric_limits<std::int32_t>::min();
    if (!facts.extents) return std::nullopt;
    const auto [x, y, width, height] = *facts.extents;
    const bool isShown = width >= 0 && height >= 0 && x != nowhere && y != nowhere;
    return isShown ? facts.extents : std::nullopt;
}

Value position(const AtspiElement&, const AtspiFacts& facts) {
    const auto shown = shownExtents(facts);
    return shown ? valueOf(ScreenPoint{.x = double(shown->x), .y = double(shown->y)}) : std::nullopt;
}

Value size(const AtspiElement&, const AtspiFacts& facts) {
    const auto shown = shownExtents(facts);
    return shown ? valueOf(ScreenSize{.width = double(shown->width), .height = double(shown->height)}) : std::nullopt;
}

template <class Condition> Value childrenWhere(const AtspiFacts& facts, Condition condition) {
    if (!facts.children) return std::nullopt;
    AccessibilityValue::Array items;
    for (const AtspiChild& child : *facts.children)
        if (condition(child)) items.emplace_back(AccessibilityElementHandle(child.element));
    return valueOf(std::move(items));
}

Value allChildren(const AtspiElement&, const AtspiFacts& facts) {
    return childrenWhere(facts, [](const AtspiChild&) { return true; });
}

Value visibleChildren(const AtspiElement&, const AtspiFacts& facts) {
    const auto ax = facts.axRole();
    if (!ax || !holdsItems(*ax)) return std::nullopt;
    return childrenWhere(facts, [](const AtspiChild& child) { return child.states.has(ATSPI_STATE_SHOWING); });
}

Value contents(const AtspiElement&, const AtspiFacts& facts) {
    if (facts.role != ATSPI_ROLE_SCROLL_PANE) return std::nullopt;
    return childrenWhere(facts, [](const AtspiChild& child) { return child.role != ATSPI_ROLE_SCROLL_BAR; });
}

Value focusedWindow(const AtspiElement& element, const AtspiFacts& facts) {
    return element.isApplication() ? elementValue(facts.activeChild()) : std::nullopt;
}

Value mainWindow(const AtspiElement& element, const AtspiFacts& facts) {
    if (!element.isApplication() || !facts.children) return std::nullopt;
    const auto isShown = [](const AtspiChild& child) { return child.states.has(ATSPI_STATE_SHOWING); };
    const auto found = std::ranges::find_if(*facts.children, isShown);
    return found == facts.children->end() ? std::nullopt : elementValue(found->element);
}

Value ownWindow(const AtspiElement& element, const AtspiFacts&) { return elementValue(element.window); }
Value focusedElement(const AtspiElement&, const AtspiFacts& facts) { return elementValue(facts.focus); }

struct AttributeRow {
    std::string_view name;
    AtspiFactSet facts;
    Value (*value)(const AtspiElement& element, const AtspiFacts& facts);
};

constexpr AttributeRow attributeTable[] = {
    {"AXRole", {Fact::role, Fact::states}, &roleValue},
    {"AXSubrole", {Fact::role, Fact::states, Fact::attributes}, &subroleValue},
    {"AXRoleDescription", {Fact::roleName}, &roleDescription},
    {"AXIdentifier", {Fact::role, Fact::states, Fact::attributes, Fact::identifier}, &identifierValue},
    {"AXDescription", {Fact::description}, &description},
    {"AXTitle", {Fact::name}, &title},
    {"AXPlaceholderValue", {Fact::role, Fact::states, Fact::attributes}, &placeholder},
    {"AXValue", {Fact::role, Fact::states, Fact::name, Fact::text, Fact::number}, &currentValue},
    {"AXSelectedText", {Fact::role, Fact::states, Fact::selection}, &selectedText},
    {"AXEditable", {Fact::role, Fact::states}, &editable},
    {"AXFocused", {Fact::states}, &focused},
    {"AXPosition", {Fact::extents}, &position},
    {"AXSize", {Fact::extents}, &size},
    {"AXChildren", {Fact::role, Fact::states, Fact::children}, &allChildren},
    {"AXVisibleChildren", {Fact::role, Fact::states, Fact::children, Fact::childStates}, &visibleChildren},
    {"AXContents", {Fact::role, Fact::states, Fact::children, Fact::childRoles}, &contents},
    {"AXFocusedWindow", {Fact::role, Fact::children, Fact::childStates}, &focusedWindow},
    {"AXMainWindow", {Fact::role, Fact::children, Fact::childStates}, &mainWindow},
    {"AXWindow", {}, &ownWindow},
    {"AXFocusedUIElement", {Fact::role, Fact::children, Fact::childStates, Fact::focus}, &focusedElement},
};

const AttributeRow* rowOf(std::string_view name) {
    const auto* found = std::ranges::find(attributeTable, name, &AttributeRow::name);
    return found == std::end(attributeTable) ? nullptr : found;
}

} // namespace

AtspiFactSet factsFor(const AccessibilityQuery& query) {
    AtspiFactSet wanted;
    for (const std::string& attribute : query.attributes)
        if (const AttributeRow* row = rowOf(attribute)) wanted.add(row->facts);
    if (std::ranges::find(query.settable, "AXValue") != query.settable.end())
        wanted.add({Fact::role, Fact::states, Fact::interfaces});
    return wanted;
}

AccessibilityAnswer answerTo(const AccessibilityQuery& query, const AtspiElement& element, const AtspiFacts& facts) {
    AccessibilityAnswer answer;
    for (const std::string& attribute : query.attributes)
        if (const AttributeRow* row = rowOf(attribute))
            if (Value found = row->value(element, facts)) answer.values.insert_or_assign(attribute, *std::move(found));
    for (const std::string& attribute : query.settable)
        if (attribute == "AXValue" && (takesText(facts) || takesNumber(facts))) answer.settable.insert(attribute);
    return answer;
}

bool takesText(const AtspiFacts& facts) { return !isReadOnly(facts) && facts.interfaces.contains(atspi::editableText); }

bool takesNumber(const AtspiFacts& facts) {
    const auto ax = facts.axRole();
    return ax && takesNumber(*ax) && facts.has(ATSPI_STATE_SENSITIVE) && !facts.has(ATSPI_STATE_READ_ONLY)
           && facts.interfaces.contains(atspi::value);
}

} // namespace vesk
