#include "VeskShellCore/InspectableElement.hpp"

#include "VeskShellCore/AccessibilityReading.hpp"
#include "VeskShellCore/ElementSearch.hpp"
#include "VeskShellCore/NativeControlError.hpp"

namespace vesk {
namespace {

std::optional<AccessibilityElementHandle> frontWindow(const AccessibilityAnswer& application) {
    for (const char* attribute : {"AXFocusedWindow", "AXMainWindow", "AXWindow"})
        if (auto window = copyElementAttribute(application, attribute)) return window;
    return std::nullopt;
}

} // namespace

void assertAccessibilityTrusted(Consent& consent) {
    if (!consent.isProcessTrusted())
        throw NativeControlError(85, "Accessibility control has not been granted to Vesk.");
}

RunningApplication currentFrontmostApp(RunningApplications& applications) {
    auto application = applications.frontmost();
    if (!application) throw NativeControlError(92, "No frontmost macOS application was available.");
    return *std::move(application);
}

Task<ResolvedInspectableContext> resolveInspectableElement(AccessibilityTree& tree, RunningApplication application) {
    const AccessibilityElementHandle root = co_await tree.applicationElement(application.processIdentifier);
    AccessibilityQuery query{{"AXFocusedWindow", "AXMainWindow", "AXWindow", "AXFocusedUIElement"}, {}};
    auto reading = readElement(tree, root, std::move(query));
    const AccessibilityAnswer answer = co_await std::move(reading);

    const auto window = frontWindow(answer);
    if (auto direct = copyElementAttribute(answer, "AXFocusedUIElement"))
        co_return ResolvedInspectableContext{window, *std::move(direct), false};

    auto search = findBestInspectableDescendant(tree, window.value_or(root));
    auto found = co_await std::move(search);
    if (!found) throw NativeControlError(91, "Unable to read the focused UI element for the frontmost app.");
    co_return ResolvedInspectableContext{window, *std::move(found), true};
}

} // namespace vesk
