#pragma once

#include "VeskPlatform/AccessibilityTree.hpp"
#include "VeskPlatform/Apple/AXElement.hpp"

#include <memory>

namespace vesk {

/// The elements of the system's Accessibility interface. Applications are asked on threads of their own: one may be
/// slow to answer, and this process answers on its main thread.
class AXAccessibilityTree : public AccessibilityTree {
public:
    Task<AccessibilityElementHandle> applicationElement(std::int32_t processIdentifier) override;
    Task<std::vector<AccessibilityAnswer>> read(std::vector<AccessibilityElementHandle> elements,
                                                AccessibilityQuery query) override;
    Task<bool> setValue(AccessibilityElementHandle element, std::string attribute, std::string text) override;

private:
    /// Shared with the threads.
    std::shared_ptr<AXElements> elements_ = std::make_shared<AXElements>();
};

} // namespace vesk
