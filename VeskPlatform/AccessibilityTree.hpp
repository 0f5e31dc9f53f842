#pragma once

#include "VeskPlatform/ScreenGeometry.hpp"
#include "VeskSupport/Task.hpp"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <variant>
#include <vector>

namespace vesk {

/// A node of the tree; adapters derive from it.
class AccessibilityElement {
public:
    virtual ~AccessibilityElement() = default;
};

/// Names an element. Two handles are the same element when they are the same pointer, so an adapter gives out one
/// handle for each node while somebody holds it.
using AccessibilityElementHandle = std::shared_ptr<const AccessibilityElement>;

/// The value of an attribute in one of the types that applications use. A handle is never null.
struct AccessibilityValue {
    using Array = std::vector<AccessibilityValue>;
    std::variant<std::string, bool, std::int64_t, double, ScreenPoint, ScreenSize, AccessibilityElementHandle, Array>
        value;
};

/// What to read of an element: values of attributes, and whether attributes can be set.
struct AccessibilityQuery {
    std::vector<std::string> attributes;
    std::vector<std::string> settable;
};

/// The attributes that had a value, and those that can be set. What could not be read is not there.
struct AccessibilityAnswer {
    std::map<std::string, AccessibilityValue, std::less<>> values;
    std::set<std::string, std::less<>> settable;
};

/// The elements of the user interfaces of running applications, with attributes named "AXRole", "AXChildren" and so
/// on. Called on the main executor; each call reads live state. Reading never fails: an application that is gone or
/// does not answer in time has no values.
class AccessibilityTree {
public:
    virtual ~AccessibilityTree() = default;

    /// The root element of an application; also for a process that shows no elements.
    virtual Task<AccessibilityElementHandle> applicationElement(std::int32_t processIdentifier) = 0;
    /// One answer for each element, in their order. The adapter may ask for all of it at the same time.
    virtual Task<std::vector<AccessibilityAnswer>> read(std::vector<AccessibilityElementHandle> elements,
                                                        AccessibilityQuery query) = 0;
    /// False where the application did not take the value.
    virtual Task<bool> setValue(AccessibilityElementHandle element, std::string attribute, std::string text) = 0;
};

} // namespace vesk
