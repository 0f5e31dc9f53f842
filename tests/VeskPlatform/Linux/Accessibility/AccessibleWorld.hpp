#pragma once

#include "VeskPlatform/Linux/Accessibility/AtspiTree.hpp"
#include "tests/fakes/FakeAccessibleApplication.hpp"
#include "tests/fakes/RunTask.hpp"
#include "tests/support/PrivateBus.hpp"

#include <gtest/gtest.h>
#include <memory>
#include <unistd.h>

namespace vesk::test {

/// An accessibility bus with a registry and one application of this process. Tests change the application, then `open`
/// the tree.
class AccessibleWorld : public ::testing::Test {
protected:
    PrivateBus bus;
    FakeAccessibleApplication registry{"org.a11y.atspi.Registry"};
    FakeAccessibleApplication application{"org.example.Application"};
    AtspiPatience patience;

    static std::string path(const std::string& name) { return "/org/a11y/atspi/accessible/" + name; }
    static std::string root() { return FakeAccessibleApplication::root; }

    /// A shown window that is active, with an element in it.
    FakeAccessible& addElement(AtspiRole role, std::vector<AtspiStateType> states = {}) {
        application.add(root(), path("window"), ATSPI_ROLE_FRAME, {ATSPI_STATE_ACTIVE, ATSPI_STATE_SHOWING});
        return application.add(path("window"), path("element"), role, std::move(states));
    }

    void open() {
        registry.objects[root()].children.emplace_back(application.name(), root());
        application.serveAt(bus.address());
        registry.serveAt(bus.address());
        tree_ = std::make_unique<AtspiTree>(
            bus.address(), [this](const std::string& line) { log.push_back(line); }, patience);
    }
    AtspiTree& tree() {
        if (!tree_) open();
        return *tree_;
    }

    AccessibilityElementHandle applicationElement(std::int32_t processIdentifier = ::getpid()) {
        return runTask(tree().applicationElement(processIdentifier));
    }
    AccessibilityAnswer read(const AccessibilityElementHandle& element, std::vector<std::string> attributes,
                             std::vector<std::string> settable = {}) {
        return runTask(tree().read({element}, {std::move(attributes), std::move(settable)})).at(0);
    }
    std::vector<AccessibilityElementHandle> elements(const AccessibilityElementHandle& element,
                                                     const std::string& attribute = "AXChildren") {
        std::vector<AccessibilityElementHandle> found;
        const AccessibilityAnswer answer = read(element, {attribute});
        const auto value = answer.values.find(attribute);
        if (value == answer.values.end()) return found;
        for (const AccessibilityValue& item : std::get<AccessibilityValue::Array>(value->second.value))
            found.push_back(std::get<AccessibilityElementHandle>(item.value));
        return found;
    }
    /// The element in the window of `addElement`.
    AccessibilityElementHandle element() { return elements(elements(applicationElement()).at(0)).at(0); }

    /// Null where the attribute has no value.
    static AccessibilityElementHandle handleIn(const AccessibilityAnswer& answer, const std::string& attribute) {
        const auto found = answer.values.find(attribute);
        return found == answer.values.end() ? nullptr : std::get<AccessibilityElementHandle>(found->second.value);
    }
    static AccessibilityQuery everything() {
        return {{"AXRole", "AXTitle", "AXValue", "AXSize", "AXChildren", "AXFocusedUIElement", "AXFocusedWindow"},
                {"AXValue"}};
    }
    static std::vector<std::string> pathsOf(const std::vector<AccessibilityElementHandle>& handles) {
        std::vector<std::string> paths;
        for (const AccessibilityElementHandle& handle : handles) paths.push_back(pathOf(handle));
        return paths;
    }
    static std::string pathOf(const AccessibilityElementHandle& element) {
        return element ? dynamic_cast<const AtspiElement&>(*element).reference.path : "none";
    }
    template <class T>
    static std::optional<T> valueIn(const AccessibilityAnswer& answer, const std::string& attribute) {
        const auto found = answer.values.find(attribute);
        if (found == answer.values.end()) return std::nullopt;
        const T* value = std::get_if<T>(&found->second.value);
        return value == nullptr ? std::nullopt : std::optional(*value);
    }

    std::vector<std::string> log;

private:
    std::unique_ptr<AtspiTree> tree_;
};

} // namespace vesk::test
