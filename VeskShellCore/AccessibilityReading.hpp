#pragma once

#include "VeskPlatform/AccessibilityTree.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

// What one attribute of an answer says, as a type. All of it is total: a value that is absent or of another type gives
// nothing.

namespace vesk {

std::optional<AccessibilityElementHandle> copyElementAttribute(const AccessibilityAnswer& answer,
                                                               std::string_view attribute);
/// A number is given as text: whole numbers in full, others as the shortest text that reads back as the same.
std::optional<std::string> copyStringAttribute(const AccessibilityAnswer& answer, std::string_view attribute);
/// A number is true unless it is 0.
std::optional<bool> copyBoolAttribute(const AccessibilityAnswer& answer, std::string_view attribute);
std::optional<ScreenPoint> copyCGPointAttribute(const AccessibilityAnswer& answer, std::string_view attribute);
std::optional<ScreenSize> copyCGSizeAttribute(const AccessibilityAnswer& answer, std::string_view attribute);
/// The items that are elements, in order.
std::vector<AccessibilityElementHandle> copyElementArrayAttribute(const AccessibilityAnswer& answer,
                                                                  std::string_view attribute);
bool isAttributeSettable(const AccessibilityAnswer& answer, std::string_view attribute);

/// Whether a role or subrole names something that text is entered into.
bool inferEditable(const std::optional<std::string>& role, const std::optional<std::string>& subrole);

/// `text` on one line without white space at its ends, at most 160 characters, the last of them "…" where it was
/// longer; none where nothing is left.
std::optional<std::string> previewOf(const std::optional<std::string>& text);

/// The answer of one element.
Task<AccessibilityAnswer> readElement(AccessibilityTree& tree, AccessibilityElementHandle element,
                                      AccessibilityQuery query);

} // namespace vesk
