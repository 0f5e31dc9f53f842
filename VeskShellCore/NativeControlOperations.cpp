#include "VeskShellCore/NativeControlOperations.hpp"

#include "VeskShellCore/AccessibilityReading.hpp"
#include "VeskShellCore/ControlResponse.hpp"
#include "VeskShellCore/InspectableElement.hpp"
#include "VeskShellCore/NativeControlError.hpp"
#include "VeskSupport/Text.hpp"

namespace vesk::VeskNativeControlOperations {
namespace {

AccessibilityQuery descriptionQuery() {
    return {{"AXPosition", "AXSize", "AXWindow", "AXRole", "AXSubrole", "AXIdentifier", "AXDescription", "AXTitle",
             "AXPlaceholderValue", "AXValue", "AXSelectedText", "AXRoleDescription", "AXEditable", "AXFocused"},
            {"AXValue"}};
}

/// Other than for the search, an element that says it is not editable still is where its role looks so.
bool isEditable(const AccessibilityAnswer& answer) {
    const bool told = copyBoolAttribute(answer, "AXEditable").value_or(isAttributeSettable(answer, "AXValue"));
    return told || inferEditable(copyStringAttribute(answer, "AXRole"), copyStringAttribute(answer, "AXSubrole"));
}

void describeFrame(const AccessibilityAnswer& answer, CapabilityFocusedElementResponse& response) {
    if (const auto position = copyCGPointAttribute(answer, "AXPosition")) {
        response.frameX = position->x;
        response.frameY = position->y;
    }
    if (const auto size = copyCGSizeAttribute(answer, "AXSize")) {
        response.frameWidth = size->width;
        response.frameHeight = size->height;
    }
}

std::string focusedElementDetail(bool takesText, bool usedFallback) {
    if (usedFallback)
        return std::string(takesText ? "Reported the most likely editable field"
                                     : "Reported the most likely focused UI element")
               + " after scanning the front window because the app did not expose a direct focused element.";
    return takesText ? "Reported the currently focused editable element."
                     : "Reported the currently focused UI element.";
}

void describeElement(const AccessibilityAnswer& answer, bool usedFallback, CapabilityFocusedElementResponse& response) {
    const bool settable = isAttributeSettable(answer, "AXValue"), editable = isEditable(answer);
    response.role = copyStringAttribute(answer, "AXRole");
    response.subrole = copyStringAttribute(answer, "AXSubrole");
    response.roleDescription = copyStringAttribute(answer, "AXRoleDescription");
    response.identifier = copyStringAttribute(answer, "AXIdentifier");
    response.elementDescription = copyStringAttribute(answer, "AXDescription");
    response.title = copyStringAttribute(answer, "AXTitle");
    response.placeholderValue = copyStringAttribute(answer, "AXPlaceholderValue");
    response.valuePreview = previewOf(copyStringAttribute(answer, "AXValue"));
    response.selectedTextPreview = previewOf(copyStringAttribute(answer, "AXSelectedText"));
    response.valueSettable = settable;
    response.editable = editable;
    response.focused = copyBoolAttribute(answer, "AXFocused");
    describeFrame(answer, response);
    response.detail = focusedElementDetail(editable || settable, usedFallback);
}

Task<std::optional<std::string>> titleOf(AccessibilityTree& tree, std::optional<AccessibilityElementHandle> window) {
    if (!window) co_return std::nullopt;
    AccessibilityQuery query{{"AXTitle"}, {}};
    auto reading = readElement(tree, *std::move(window), std::move(query));
    const AccessibilityAnswer answer = co_await std::move(reading);
    co_return copyStringAttribute(answer, "AXTitle");
}

/// An element that neither says nor looks editable is still taken where its value can be set.
void assertValueSettable(const AccessibilityAnswer& answer) {
    if (isAttributeSettable(answer, "AXValue")) return;
    if (isEditable(answer))
        throw NativeControlError(94, "The focused UI element does not support direct value setting.");
    throw NativeControlError(93, "The currently focused UI element is not editable.");
}

} // namespace

Task<CapabilityActiveAppResponse> activeApp(Platform& platform, Desktop& desktop) {
    auto response = controlResponseOf<CapabilityActiveAppResponse>(platform);
    const auto application = desktop.runningApplications().frontmost();
    if (application) describe(*application, response);
    response.detail = response.appName ? "Reported the current frontmost macOS application."
                                       : "No frontmost macOS application was reported.";
    co_return response;
}

Task<CapabilityFocusedElementResponse> focusedElement(Platform& platform, Desktop& desktop) {
    assertAccessibilityTrusted(platform.consent());
    const RunningApplication application = currentFrontmostApp(desktop.runningApplications());
    AccessibilityTree& tree = desktop.accessibilityTree();
    const ResolvedInspectableContext context = co_await resolveInspectableElement(tree, application);
    AccessibilityQuery query = descriptionQuery();
    auto reading = readElement(tree, context.element, std::move(query));
    const AccessibilityAnswer answer = co_await std::move(reading);

    auto response = controlResponseOf<CapabilityFocusedElementResponse>(platform);
    describe(application, response);
    describeElement(answer, context.usedFallback, response);
    auto window = copyElementAttribute(answer, "AXWindow");
    if (!window) window = context.window;
    auto title = titleOf(tree, std::move(window));
    response.windowTitle = co_await std::move(title);
    co_return response;
}

Task<CapabilityControlResponse> setFocusedValue(Platform& platform, Desktop& desktop, std::string text) {
    assertAccessibilityTrusted(platform.consent());
    if (text.empty()) throw NativeControlError(82, "Cannot set an empty string.");
    const RunningApplication application = currentFrontmostApp(desktop.runningApplications());
    AccessibilityTree& tree = desktop.accessibilityTree();
    const ResolvedInspectableContext context = co_await resolveInspectableElement(tree, application);
    AccessibilityQuery query{{"AXEditable", "AXRole", "AXSubrole"}, {"AXValue"}};
    auto reading = readElement(tree, context.element, std::move(query));
    const AccessibilityAnswer answer = co_await std::move(reading);
    assertValueSettable(answer);

    auto setting = tree.setValue(context.element, "AXValue", text);
    const bool accepted = co_await std::move(setting);
    if (!accepted) throw NativeControlError(95, "macOS did not accept a direct value update for the focused element.");

    auto response = controlResponseOf<CapabilityControlResponse>(platform);
    response.action = CapabilityControlAction::setValue;
    response.textLength = static_cast<std::int64_t>(characterCount(text));
    response.detail =
        context.usedFallback
            ? "Updated the most likely editable field through macOS Accessibility after scanning the front window."
            : "Updated the focused field value through macOS Accessibility.";
    co_return response;
}

} // namespace vesk::VeskNativeControlOperations
