#pragma once

#include "VeskPlatform/Linux/Accessibility/AtspiElement.hpp"
#include "VeskPlatform/Linux/Accessibility/AtspiRoles.hpp"

#include <cstdint>
#include <initializer_list>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace vesk {

/// What can be found out about an element.
enum class AtspiFact {
    role,
    states,
    name,
    description,
    identifier,
    roleName,
    extents,
    /// Of elements with text; where they say that the name is the placeholder, the name too.
    attributes,
    /// Of elements whose value may be changed.
    interfaces,
    /// Of elements with text that is no secret, as `selection`.
    text,
    selection,
    /// Of elements with a number.
    number,
    children,
    /// The states of the children, of collections and applications.
    childStates,
    /// The roles of the children, of scroll panes.
    childRoles,
    /// Of applications; with `children` and `childStates`.
    focus,
};

class AtspiFactSet {
public:
    constexpr AtspiFactSet(std::initializer_list<AtspiFact> facts = {}) {
        for (const AtspiFact fact : facts) bits_ |= bit(fact);
    }
    constexpr bool has(AtspiFact fact) const { return (bits_ & bit(fact)) != 0; }
    constexpr void add(AtspiFactSet other) { bits_ |= other.bits_; }

private:
    static constexpr std::uint32_t bit(AtspiFact fact) { return std::uint32_t{1} << static_cast<unsigned>(fact); }

    std::uint32_t bits_ = 0;
};

struct AtspiExtents {
    std::int32_t x = 0, y = 0, width = 0, height = 0;

    bool operator==(const AtspiExtents&) const = default;
};

struct AtspiChild {
    AtspiElementHandle element;
    AtspiStates states{};
    std::uint32_t role = ATSPI_ROLE_INVALID;
};

/// What was found out about an element. What was not asked for or not answered is not there.
struct AtspiFacts {
    std::optional<std::uint32_t> role;
    std::optional<AtspiStates> states;
    std::optional<std::string> name, description, identifier, roleName, text, selection;
    std::optional<AtspiExtents> extents;
    std::map<std::string, std::string> attributes;
    std::set<std::string> interfaces;
    std::optional<double> number;
    /// In the application's order; of very many, the first ones.
    std::optional<std::vector<AtspiChild>> children;
    /// Null where the application does not tell.
    AtspiElementHandle focus;

    bool has(AtspiStateType state) const { return states && states->has(state); }
    /// None where the application did not tell its role.
    std::optional<AxRole> axRole() const;
    bool isSecret() const;
    /// Whether its value is text.
    bool hasText() const;
    /// Whether its name is its placeholder, for want of another; browsers do that and tell no placeholder then.
    bool isNamedByPlaceholder() const;
    /// The child that says it is active; null where none does.
    AtspiElementHandle activeChild() const;
};

} // namespace vesk
