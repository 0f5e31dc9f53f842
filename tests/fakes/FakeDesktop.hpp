#pragma once

#include "VeskPlatform/Desktop.hpp"
#include "tests/fakes/FakeAccessibility.hpp"
#include "tests/fakes/FakeDisplays.hpp"
#include "tests/fakes/FakeInputEvents.hpp"
#include "tests/fakes/FakeRunningApplications.hpp"

namespace vesk::test {

/// A desktop with an application "Editor" in front that shows no element, and no display.
class FakeDesktop : public Desktop {
public:
    FakeAccessibilityTree tree;
    FakeRunningApplications applications;
    FakeDisplays screens;
    FakeInputEvents events;
    FakeScreenImages images;

    FakeDesktop() {
        applications.front = RunningApplication{
            .processIdentifier = 7, .bundleIdentifier = "org.example.editor", .localizedName = "Editor"};
        tree.applications[7] = fakeElement();
    }
    AccessibilityTree& accessibilityTree() override { return tree; }
    Displays& displays() override { return screens; }
    InputEvents& inputEvents() override { return events; }
    RunningApplications& runningApplications() override { return applications; }
    ScreenImages& screenImages() override { return images; }
};

} // namespace vesk::test
