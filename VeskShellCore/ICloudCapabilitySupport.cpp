#include "VeskShellCore/ICloudCapabilitySupport.hpp"

#include "VeskPlatform/BundleInformation.hpp"
#include "VeskPlatform/CloudAccount.hpp"
#include "VeskShellCore/SignedEntitlements.hpp"
#include "VeskSupport/Text.hpp"

#include <algorithm>
#include <array>
#include <string_view>

namespace vesk::VeskICloudCapabilitySupport {
namespace {

using enum CapabilityAuthorizationState;

constexpr const char* containersKey = "com.apple.developer.icloud-container-identifiers";
constexpr const char* ubiquityContainersKey = "com.apple.developer.ubiquity-container-identifiers";
constexpr const char* servicesKey = "com.apple.developer.icloud-services";

/// The value of a key where it has that type; null where it has another or none.
template <class T> const T* valueOf(const JsonValue::Object& dictionary, std::string_view key) {
    const auto found = dictionary.find(key);
    return found == dictionary.end() ? nullptr : std::get_if<T>(&found->second.value);
}

std::optional<std::string> trimmedString(const JsonValue::Object& dictionary, std::string_view key) {
    const auto* text = valueOf<std::string>(dictionary, key);
    return text == nullptr ? std::nullopt : trimmedOrAbsent(*text);
}

/// The strings of a list, trimmed, without blank ones; none of them where a single item is no string.
std::vector<std::string> stringArray(const JsonValue::Object& dictionary, std::string_view key) {
    std::vector<std::string> strings;
    const auto* items = valueOf<JsonValue::Array>(dictionary, key);
    if (items == nullptr) return strings;
    for (const JsonValue& item : *items) {
        const auto* text = std::get_if<std::string>(&item.value);
        if (text == nullptr) return {};
        if (auto kept = trimmedOrAbsent(*text)) strings.push_back(std::move(*kept));
    }
    return strings;
}

bool hasAnyICloudEntitlement(const JsonValue::Object& entitlements) {
    static constexpr std::array keys{containersKey, ubiquityContainersKey, servicesKey};
    return std::ranges::any_of(keys, [&](std::string_view key) { return entitlements.contains(key); });
}

bool lists(const JsonValue::Object& entitlements, std::string_view key, const std::string& wanted) {
    return std::ranges::count(stringArray(entitlements, key), wanted) > 0;
}

bool hasRequiredEntitlements(const JsonValue::Object& entitlements, const ICloudBuildConfiguration& configuration) {
    const auto& container = configuration.containerIdentifier;
    const bool containerGranted = !container || lists(entitlements, containersKey, *container)
                                  || lists(entitlements, ubiquityContainersKey, *container);
    return containerGranted && std::ranges::all_of(configuration.services, [&](const std::string& service) {
               return lists(entitlements, servicesKey, service);
           });
}

CapabilityStatus status(CapabilityAuthorizationState state, const char* detail,
                        std::optional<std::string> remediation = std::nullopt) {
    return {.kind = CapabilityKind::iCloud,
            .state = state,
            .detail = detail,
            .remediation = std::move(remediation),
            .sharedAuthorizationWith = {}};
}

} // namespace

ICloudBuildConfiguration buildConfiguration(Platform& platform, const Bundle& bundle) {
    const JsonValue::Object dictionary = platform.bundleInformation().informationDictionary(bundle);
    const bool* flag = valueOf<bool>(dictionary, "VeskICloudEnabled");
    ICloudBuildConfiguration configuration;
    configuration.services = stringArray(dictionary, "VeskICloudServices");
    configuration.containerIdentifier = trimmedString(dictionary, "VeskICloudContainerIdentifier");
    configuration.teamIdentifier = trimmedString(dictionary, "VeskAppleTeamIdentifier");
    configuration.enabled =
        (flag != nullptr && *flag) || configuration.containerIdentifier.has_value() || !configuration.services.empty();
    return configuration;
}

std::optional<CapabilityStatus> configuredStatus(Platform& platform, const Bundle& bundle) {
    const JsonValue::Object entitlements = VeskSignedEntitlements::read(platform, bundle);
    const ICloudBuildConfiguration configuration = buildConfiguration(platform, bundle);
    if (!configuration.enabled) {
        if (!hasAnyICloudEntitlement(entitlements)) return std::nullopt;
        return status(unavailable, "This copy of Vesk is not ready to use iCloud yet.",
                      "Rebuild Vesk with the correct iCloud setup.");
    }
    if (!hasRequiredEntitlements(entitlements, configuration))
        return status(unavailable, "This copy of Vesk is missing part of its iCloud setup.",
                      "Rebuild Vesk with the correct Apple signing and iCloud setup.");
    if (!platform.cloudAccount().hasIdentityToken())
        return status(notDetermined, "Sign in to iCloud Drive on this Mac to use iCloud with Vesk.",
                      "Open System Settings, sign in to iCloud, and turn on iCloud Drive.");
    if (!platform.cloudAccount().containerPath(configuration.containerIdentifier))
        return status(restricted, "Vesk is set up for iCloud, but it cannot reach iCloud on this Mac right now.",
                      "Check iCloud Drive on this Mac and try again.");
    return status(granted, "Vesk can use iCloud on this Mac.");
}

} // namespace vesk::VeskICloudCapabilitySupport
