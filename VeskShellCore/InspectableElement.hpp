#pragma once

#include "VeskPlatform/AccessibilityTree.hpp"
#include "VeskPlatform/Consent.hpp"
#include "VeskPlatform/RunningApplications.hpp"

#include <optional>

// Which element of which application an operation is about.

namespace vesk {

struct ResolvedInspectableContext {
    /// The application's front window.
    std::optional<AccessibilityElementHandle> window;
    AccessibilityElementHandle element;
    /// Whether the element was searched for, since the application did not name one.
    bool usedFallback = false;
};

/// Throws NativeControlError 85 where the user has not granted control. Never prompts.
void assertAccessibilityTrusted(Consent& consent);

/// Throws NativeControlError 92 where there is none.
RunningApplication currentFrontmostApp(RunningApplications& applications);

/// The element that has the focus as the application tells, as it is; else the likeliest field of its front window, or
/// of all of it where it has no window. Throws NativeControlError 91 where there is none.
Task<ResolvedInspectableContext> resolveInspectableElement(AccessibilityTree& tree, RunningApplication application);

} // namespace vesk
