#include "VeskShellCore/NativeControlOperations.hpp"

#include "VeskPlatform/Desktop.hpp"
#include "VeskShellCore/AccessibilityReading.hpp"
#include "VeskShellCore/ApplicationActivation.hpp"
#include "VeskShellCore/ControlKeys.hpp"
#include "VeskShellCore/ControlResponse.hpp"
#include "VeskShellCore/DesktopBounds.hpp"
#include "VeskShellCore/InputSynthesis.hpp"
#include "VeskShellCore/InspectableElement.hpp"
#include "VeskShellCore/NativeControlError.hpp"
#include "VeskSupport/Text.hpp"
#include "VeskSupport/Utf16.hpp"

#include <chrono>
#include <utility>

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

constexpr std::chrono::milliseconds activationTime{1200};
constexpr std::chrono::milliseconds launchTime{1500};

/// Opens the application again and waits for it to come to the front.
Task<bool> reopen(Platform& platform, RunningApplication application) {
    auto launching = launchApplicationViaOpen(platform.desktop().runningApplications(), application);
    const bool launched = co_await std::move(launching);
    if (!launched) co_return false;
    auto waiting = waitForFrontmostApp(platform, std::move(application), launchTime);
    co_return co_await std::move(waiting);
}

std::string activationDetail(bool activated, bool accepted) {
    if (activated) return "Activated the requested macOS application.";
    return accepted ? "macOS accepted the activation request, but the target app never became frontmost."
                    : "macOS did not switch the frontmost app to the requested application.";
}

CapabilityControlResponse responseTo(Platform& platform, CapabilityControlAction action, std::string detail) {
    auto response = controlResponseOf<CapabilityControlResponse>(platform);
    response.action = action;
    response.detail = std::move(detail);
    return response;
}

std::int64_t textLengthOf(std::string_view text) { return static_cast<std::int64_t>(characterCount(text)); }

} // namespace

Task<CapabilityActiveAppResponse> activeApp(Platform& platform) {
    auto response = controlResponseOf<CapabilityActiveAppResponse>(platform);
    const auto application = platform.desktop().runningApplications().frontmost();
    if (application) describe(*application, response);
    response.detail = response.appName ? "Reported the current frontmost macOS application."
                                       : "No frontmost macOS application was reported.";
    co_return response;
}

Task<CapabilityFocusedElementResponse> focusedElement(Platform& platform) {
    assertAccessibilityTrusted(platform.consent());
    Desktop& desktop = platform.desktop();
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

Task<CapabilityControlResponse> setFocusedValue(Platform& platform, std::string text) {
    assertAccessibilityTrusted(platform.consent());
    if (text.empty()) throw NativeControlError(82, "Cannot set an empty string.");
    Desktop& desktop = platform.desktop();
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

    auto response = responseTo(
        platform, CapabilityControlAction::setValue,
        context.usedFallback
            ? "Updated the most likely editable field through macOS Accessibility after scanning the front window."
            : "Updated the focused field value through macOS Accessibility.");
    response.textLength = textLengthOf(text);
    co_return response;
}

Task<CapabilityAppActivationResponse> activateApp(Platform& platform, std::string target) {
    std::string requested(trimmed(target));
    if (requested.empty()) throw NativeControlError(89, "App target cannot be empty.");
    RunningApplications& applications = platform.desktop().runningApplications();
    const RunningApplication application = findRunningApp(applications, requested);
    const bool accepted = applications.activate(application);
    auto waiting = waitForFrontmostApp(platform, application, activationTime);
    bool activated = co_await std::move(waiting);
    if (!activated) {
        auto reopening = reopen(platform, application);
        activated = co_await std::move(reopening);
    }

    auto response = controlResponseOf<CapabilityAppActivationResponse>(platform);
    describe(application, response);
    response.requestedApp = std::move(requested);
    response.activated = activated;
    response.detail = activationDetail(activated, accepted);
    co_return response;
}

Task<CapabilityControlResponse> click(Platform& platform, double normalizedX, double normalizedY,
                                      CapabilityMouseButton button) {
    assertAccessibilityTrusted(platform.consent());
    Desktop& desktop = platform.desktop();
    const ScreenRectangle bounds = currentDesktopBounds(desktop.displays());
    // One is the far edge, a point past the last pixel; the system brings it back onto the desktop.
    const ScreenPoint point{bounds.x + normalizedX * bounds.width, bounds.y + normalizedY * bounds.height};
    auto clicking = clickAt(desktop.inputEvents(), platform.sleeper(), point, button);
    co_await std::move(clicking);

    auto response = responseTo(platform, CapabilityControlAction::click,
                               "Clicked the current screen through macOS Accessibility control.");
    response.normalizedX = normalizedX;
    response.normalizedY = normalizedY;
    response.screenX = point.x;
    response.screenY = point.y;
    response.button = button;
    co_return response;
}

Task<CapabilityControlResponse> typeText(Platform& platform, std::string text) {
    assertAccessibilityTrusted(platform.consent());
    if (text.empty()) throw NativeControlError(82, "Cannot type an empty string.");
    auto typing = typeUnits(platform.desktop().inputEvents(), platform.sleeper(), utf16Units(text));
    co_await std::move(typing);

    auto response =
        responseTo(platform, CapabilityControlAction::type, "Typed text through macOS Accessibility control.");
    response.textLength = textLengthOf(text);
    co_return response;
}

Task<CapabilityControlResponse> pressKey(Platform& platform, std::string key,
                                         std::vector<CapabilityKeyModifier> modifiers) {
    assertAccessibilityTrusted(platform.consent());
    const auto known = parseSupportedControlKey(key);
    if (!known) throw NativeControlError(64, "Invalid key. Use one of: " + supportedControlKeyList());
    auto pressing = pressKeyCode(platform.desktop().inputEvents(), platform.sleeper(), virtualKeyCode(*known),
                                 eventFlags(modifiers));
    co_await std::move(pressing);

    auto response =
        responseTo(platform, CapabilityControlAction::key,
                   modifiers.empty() ? "Pressed a keyboard key through macOS Accessibility control."
                                     : "Pressed a keyboard key with modifiers through macOS Accessibility control.");
    response.key = std::string(rawValue(*known));
    response.modifiers = std::move(modifiers);
    co_return response;
}

} // namespace vesk::VeskNativeControlOperations
