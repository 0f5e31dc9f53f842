#pragma once

#include "VeskPlatform/Desktop.hpp"
#include "VeskPlatform/RunningApplications.hpp"
#include "tests/fakes/FakeAccessibility.hpp"

namespace vesk::test {

/// Applications of which one, or none, is in front; counts how often it was asked for.
class FakeRunningApplications : public RunningApplications {
public:
    std::optional<RunningApplication> front;
    int asked = 0;

    std::optional<RunningApplication> frontmost() override {
        ++asked;
        return front;
    }
};

/// A desktop with an application "Editor" in front that shows no element.
class FakeDesktop : public Desktop {
public:
    FakeAccessibilityTree tree;
    FakeRunningApplications applications;

    FakeDesktop() {
        applications.front = RunningApplication{
            .processIdentifier = 7, .bundleIdentifier = "org.example.editor", .localizedName = "Editor"};
        tree.applications[7] = fakeElement();
    }
    AccessibilityTree& accessibilityTree() override { return tree; }
    RunningApplications& runningApplications() override { return applications; }
};

} // namespace vesk::test
