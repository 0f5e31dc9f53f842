#pragma once

#include "VeskShellCore/AccessibilityReading.hpp"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

// Which element of a window the user most likely types into, where the application does not say.

namespace vesk {

/// What `childElements` and `scoreInspectableCandidate` look at.
AccessibilityQuery searchQuery();

/// The children under all of an element's lists of children, each handle once, in the order of their first mention.
std::vector<AccessibilityElementHandle> childElements(const AccessibilityAnswer& answer);

/// How likely an element is the field that the user means, from 0 to 290.
std::int64_t scoreInspectableCandidate(const AccessibilityAnswer& answer);

/// The element with the highest score of the first 500, breadth first from `start`; the earlier one of equals, and the
/// first one of 200 or more without looking further. None where no score reaches 40.
Task<std::optional<AccessibilityElementHandle>> findBestInspectableDescendant(AccessibilityTree& tree,
                                                                              AccessibilityElementHandle start);

} // namespace vesk
