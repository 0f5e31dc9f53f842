#pragma once

namespace vesk {

class AccessibilityTree;
class Displays;
class InputEvents;
class RunningApplications;
class ScreenImages;

/// The ports of one desktop session. An accessor builds its adapter on first use and keeps it. Accessors are called on
/// the main executor and throw ErrorRecord where there is no session.
class Desktop {
public:
    virtual ~Desktop() = default;

    virtual AccessibilityTree& accessibilityTree() = 0;
    virtual Displays& displays() = 0;
    virtual InputEvents& inputEvents() = 0;
    virtual RunningApplications& runningApplications() = 0;
    virtual ScreenImages& screenImages() = 0;
};

} // namespace vesk
