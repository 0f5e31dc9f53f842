#include "VeskPlatform/Linux/Accessibility/AtspiFacts.hpp"

#include <algorithm>

namespace vesk {

std::optional<AxRole> AtspiFacts::axRole() const {
    return role ? std::optional(axRoleOf(*role, states.value_or(AtspiStates{}))) : std::nullopt;
}

bool AtspiFacts::isSecret() const { return role == ATSPI_ROLE_PASSWORD_TEXT; }

bool AtspiFacts::hasText() const {
    const auto ax = axRole();
    return ax && (holdsText(*ax) || has(ATSPI_STATE_EDITABLE));
}

bool AtspiFacts::isNamedByPlaceholder() const {
    const auto found = attributes.find("name-from");
    return found != attributes.end() && found->second == "placeholder";
}

AtspiElementHandle AtspiFacts::activeChild() const {
    if (!children) return nullptr;
    const auto isActive = [](const AtspiChild& child) { return child.states.has(ATSPI_STATE_ACTIVE); };
    const auto found = std::ranges::find_if(*children, isActive);
    return found == children->end() ? nullptr : found->element;
}

} // namespace vesk
