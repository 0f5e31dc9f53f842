#pragma once

#include "VeskShellCore/CapabilityModels.hpp"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vesk {

enum class CapabilityControlAction { click, type, setValue, key };

template <>
inline constexpr auto rawValueTable<CapabilityControlAction> =
    std::to_array<std::pair<CapabilityControlAction, std::string_view>>({
        {CapabilityControlAction::click, "click"},
        {CapabilityControlAction::type, "type"},
        {CapabilityControlAction::setValue, "set_value"},
        {CapabilityControlAction::key, "key"},
    });

struct CapabilityActiveAppResponse {
    std::string brokerPath;
    std::optional<std::string> bundlePath;
    std::optional<std::string> appName;
    std::optional<std::string> bundleIdentifier;
    std::optional<std::int32_t> processIdentifier;
    std::string detail;

    bool operator==(const CapabilityActiveAppResponse&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityActiveAppResponse> =
    recordFields(required("brokerPath", &CapabilityActiveAppResponse::brokerPath),
                 optional("bundlePath", &CapabilityActiveAppResponse::bundlePath),
                 optional("appName", &CapabilityActiveAppResponse::appName),
                 optional("bundleIdentifier", &CapabilityActiveAppResponse::bundleIdentifier),
                 optional("processIdentifier", &CapabilityActiveAppResponse::processIdentifier),
                 required("detail", &CapabilityActiveAppResponse::detail));

/// The frame is in points of the space that all displays share.
struct CapabilityFocusedElementResponse {
    std::string brokerPath;
    std::optional<std::string> bundlePath;
    std::optional<std::string> appName;
    std::optional<std::string> bundleIdentifier;
    std::optional<std::int32_t> processIdentifier;
    std::optional<std::string> windowTitle;
    std::optional<std::string> role;
    std::optional<std::string> subrole;
    std::optional<std::string> roleDescription;
    std::optional<std::string> identifier;
    std::optional<std::string> elementDescription;
    std::optional<std::string> title;
    std::optional<std::string> placeholderValue;
    std::optional<std::string> valuePreview;
    std::optional<std::string> selectedTextPreview;
    std::optional<bool> valueSettable;
    std::optional<bool> editable;
    std::optional<bool> focused;
    std::optional<double> frameX;
    std::optional<double> frameY;
    std::optional<double> frameWidth;
    std::optional<double> frameHeight;
    std::string detail;

    bool operator==(const CapabilityFocusedElementResponse&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityFocusedElementResponse> =
    recordFields(required("brokerPath", &CapabilityFocusedElementResponse::brokerPath),
                 optional("bundlePath", &CapabilityFocusedElementResponse::bundlePath),
                 optional("appName", &CapabilityFocusedElementResponse::appName),
                 optional("bundleIdentifier", &CapabilityFocusedElementResponse::bundleIdentifier),
                 optional("processIdentifier", &CapabilityFocusedElementResponse::processIdentifier),
                 optional("windowTitle", &CapabilityFocusedElementResponse::windowTitle),
                 optional("role", &CapabilityFocusedElementResponse::role),
                 optional("subrole", &CapabilityFocusedElementResponse::subrole),
                 optional("roleDescription", &CapabilityFocusedElementResponse::roleDescription),
                 optional("identifier", &CapabilityFocusedElementResponse::identifier),
                 optional("elementDescription", &CapabilityFocusedElementResponse::elementDescription),
                 optional("title", &CapabilityFocusedElementResponse::title),
                 optional("placeholderValue", &CapabilityFocusedElementResponse::placeholderValue),
                 optional("valuePreview", &CapabilityFocusedElementResponse::valuePreview),
                 optional("selectedTextPreview", &CapabilityFocusedElementResponse::selectedTextPreview),
                 optional("valueSettable", &CapabilityFocusedElementResponse::valueSettable),
                 optional("editable", &CapabilityFocusedElementResponse::editable),
                 optional("focused", &CapabilityFocusedElementResponse::focused),
                 optional("frameX", &CapabilityFocusedElementResponse::frameX),
                 optional("frameY", &CapabilityFocusedElementResponse::frameY),
                 optional("frameWidth", &CapabilityFocusedElementResponse::frameWidth),
                 optional("frameHeight", &CapabilityFocusedElementResponse::frameHeight),
                 required("detail", &CapabilityFocusedElementResponse::detail));

/// `normalizedX` and `normalizedY` are parts of the desktop's width and height from its top left corner, `screenX` and
/// `screenY` points.
struct CapabilityControlResponse {
    std::string brokerPath;
    std::optional<std::string> bundlePath;
    CapabilityControlAction action{};
    std::string detail;
    std::optional<double> normalizedX;
    std::optional<double> normalizedY;
    std::optional<double> screenX;
    std::optional<double> screenY;
    std::optional<CapabilityMouseButton> button;
    /// In characters as people count them.
    std::optional<std::int64_t> textLength;
    std::optional<std::string> key;
    std::optional<std::vector<CapabilityKeyModifier>> modifiers;

    bool operator==(const CapabilityControlResponse&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityControlResponse> = recordFields(
    required("brokerPath", &CapabilityControlResponse::brokerPath),
    optional("bundlePath", &CapabilityControlResponse::bundlePath),
    required("action", &CapabilityControlResponse::action), required("detail", &CapabilityControlResponse::detail),
    optional("normalizedX", &CapabilityControlResponse::normalizedX),
    optional("normalizedY", &CapabilityControlResponse::normalizedY),
    optional("screenX", &CapabilityControlResponse::screenX), optional("screenY", &CapabilityControlResponse::screenY),
    optional("button", &CapabilityControlResponse::button),
    optional("textLength", &CapabilityControlResponse::textLength), optional("key", &CapabilityControlResponse::key),
    optional("modifiers", &CapabilityControlResponse::modifiers));

struct CapabilityAppActivationResponse {
    std::string brokerPath;
    std::optional<std::string> bundlePath;
    std::string requestedApp;
    /// Whether the application was seen in front.
    bool activated = false;
    std::optional<std::string> appName;
    std::optional<std::string> bundleIdentifier;
    std::optional<std::int32_t> processIdentifier;
    std::string detail;

    bool operator==(const CapabilityAppActivationResponse&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityAppActivationResponse> =
    recordFields(required("brokerPath", &CapabilityAppActivationResponse::brokerPath),
                 optional("bundlePath", &CapabilityAppActivationResponse::bundlePath),
                 required("requestedApp", &CapabilityAppActivationResponse::requestedApp),
                 required("activated", &CapabilityAppActivationResponse::activated),
                 optional("appName", &CapabilityAppActivationResponse::appName),
                 optional("bundleIdentifier", &CapabilityAppActivationResponse::bundleIdentifier),
                 optional("processIdentifier", &CapabilityAppActivationResponse::processIdentifier),
                 required("detail", &CapabilityAppActivationResponse::detail));

} // namespace vesk
