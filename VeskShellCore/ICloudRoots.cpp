#include "VeskShellCore/ICloudRoots.hpp"

#include "VeskPlatform/CloudAccount.hpp"
#include "VeskPlatform/FileManager.hpp"
#include "VeskShellCore/ICloudCapabilitySupport.hpp"
#include "VeskShellCore/ICloudError.hpp"
#include "VeskSupport/Text.hpp"

#include <vector>

namespace vesk {
namespace {

[[noreturn]] void failNotConfigured() {
    throw ICloudError(400, "This Vesk build is not configured for iCloud Drive access.");
}

std::string refusal(const CapabilityStatus& status) {
    std::vector<std::string> sentences;
    if (!status.detail.empty()) sentences.push_back(status.detail);
    if (status.remediation && !status.remediation->empty()) sentences.push_back(*status.remediation);
    return sentences.empty() ? "Vesk cannot access iCloud right now." : joined(sentences, " ");
}

void ensureICloudReady(Platform& platform, const ICloudBuildConfiguration& configuration, const Bundle& bundle) {
    if (!configuration.enabled) failNotConfigured();
    const auto status = VeskICloudCapabilitySupport::configuredStatus(platform, bundle);
    if (status && status->state != CapabilityAuthorizationState::granted) throw ICloudError(403, refusal(*status));
}

ICloudRoot appDocumentsRoot(Platform& platform, const ICloudBuildConfiguration& configuration) {
    if (!configuration.containerIdentifier) failNotConfigured();
    const auto container = platform.cloudAccount().containerPath(configuration.containerIdentifier);
    if (!container) throw ICloudError(404, "The configured Vesk iCloud container is not reachable on this Mac.");
    std::string documents = *container + "/Documents";
    platform.fileManager().createDirectory(documents);
    return {.scope = CapabilityICloudScope::appDocuments,
            .containerIdentifier = *configuration.containerIdentifier,
            .containerPath = *container,
            .rootPath = std::move(documents),
            .detail = "Vesk.app is using its iCloud Drive documents container."};
}

ICloudRoot driveRoot(Platform& platform) {
    const auto drive = platform.cloudAccount().drivePath();
    const auto attributes = drive ? platform.fileManager().attributes(*drive) : std::nullopt;
    if (!attributes || !attributes->isDirectory)
        throw ICloudError(404, "The user's iCloud Drive root is not reachable on this Mac.");
    return {.scope = CapabilityICloudScope::drive,
            .containerIdentifier = "com.apple.CloudDocs",
            .containerPath = *drive,
            .rootPath = *drive,
            .detail = "Vesk.app is using the user's iCloud Drive root."};
}

} // namespace

ICloudRoot resolveICloudRoot(Platform& platform, CapabilityICloudScope scope, const Bundle& bundle) {
    const auto configuration = VeskICloudCapabilitySupport::buildConfiguration(platform, bundle);
    ensureICloudReady(platform, configuration, bundle);
    return scope == CapabilityICloudScope::drive ? driveRoot(platform) : appDocumentsRoot(platform, configuration);
}

} // namespace vesk
