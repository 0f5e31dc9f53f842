#pragma once

#include "VeskPlatform/AccessibilityTree.hpp"

#include <chrono>
#include <compare>
#include <map>
#include <memory>
#include <string>
#include <utility>

namespace vesk {

/// How AT-SPI names an element: the bus name of its application and the path of an object there.
struct AtspiReference {
    std::string service;
    std::string path;

    auto operator<=>(const AtspiReference&) const = default;
    bool operator==(const AtspiReference&) const = default;
    /// Whether it names an object on the bus: applications also give references to nothing.
    bool isElement() const;
};

/// An application that is looked at, and how much longer it is waited for.
struct AtspiApplication {
    std::chrono::steady_clock::duration patience{};
    /// False once it has not answered that question while it did others: Qt 5 fails it for each element.
    bool tellsIdentifiers = true;
};

/// An element of an application. The window is the top-level one that it was found in; null for windows and
/// applications themselves.
class AtspiElement : public AccessibilityElement {
public:
    AtspiElement(AtspiReference name, std::shared_ptr<AtspiApplication> owner,
                 std::shared_ptr<const AtspiElement> ancestor)
        : reference(std::move(name)), application(std::move(owner)), window(std::move(ancestor)) {}

    /// The object "/org/a11y/atspi/accessible/root" of each application.
    bool isApplication() const;

    const AtspiReference reference;
    const std::shared_ptr<AtspiApplication> application;
    const std::shared_ptr<const AtspiElement> window;
};

using AtspiElementHandle = std::shared_ptr<const AtspiElement>;

/// One handle for each element while somebody holds it.
class AtspiElements {
public:
    /// The root of an application, which is from now on waited for that long in all.
    AtspiElementHandle application(AtspiReference reference, std::chrono::steady_clock::duration patience);
    /// An element that was found below `parent`.
    AtspiElementHandle below(const AtspiElementHandle& parent, AtspiReference reference);

private:
    AtspiElementHandle handle(AtspiReference reference, const std::shared_ptr<AtspiApplication>& application,
                              const AtspiElementHandle& window);
    void forgetReleased();

    std::map<AtspiReference, std::weak_ptr<const AtspiElement>> handles_;
    std::size_t enough_ = 1024;
};

} // namespace vesk
