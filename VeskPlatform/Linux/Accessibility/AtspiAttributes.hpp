#pragma once

#include "VeskPlatform/Linux/Accessibility/AtspiFacts.hpp"

// Attributes of the AX vocabulary, out of what AT-SPI tells. Texts that are empty are not there, except for a value.

namespace vesk {

/// What has to be found out to answer a query. An attribute that is not known needs nothing and has no value.
AtspiFactSet factsFor(const AccessibilityQuery& query);

/// `element` is the one that the facts are of.
AccessibilityAnswer answerTo(const AccessibilityQuery& query, const AtspiElement& element, const AtspiFacts& facts);

/// Whether the value is text that the application lets others replace; whether it is a number of that kind.
bool takesText(const AtspiFacts& facts);
bool takesNumber(const AtspiFacts& facts);

} // namespace vesk
