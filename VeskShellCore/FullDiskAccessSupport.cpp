#include "VeskShellCore/FullDiskAccessSupport.hpp"

#include "VeskPlatform/Environment.hpp"
#include "VeskPlatform/FileManager.hpp"
#include "VeskPlatform/FilePlaces.hpp"
#include "VeskShellCore/AccessDenial.hpp"
#include "VeskShellCore/PathProbe.hpp"
#include "VeskSupport/FilePath.hpp"

#include <optional>
#include <utility>

namespace vesk::VeskFullDiskAccessSupport {
namespace {

using enum CapabilityAuthorizationState;

CapabilityStatus record(CapabilityAuthorizationState state, std::string detail) {
    CapabilityStatus status;
    status.kind = CapabilityKind::fullDiskAccess;
    status.state = state;
    status.detail = std::move(detail);
    if (state == denied) status.remediation = "Grant Full Disk Access to Vesk in System Settings.";
    return status;
}

enum class Answer { nothingThere, readable, blocked, unclear };

Answer answerOf(const std::string& path, FileManager& files) {
    const auto attributes = files.attributes(path);
    if (!attributes) return Answer::nothingThere;
    try {
        tryReading(files, path, *attributes);
        return Answer::readable;
    } catch (const ErrorRecord& error) {
        return isAccessDenied(error) ? Answer::blocked : Answer::unclear;
    }
}

} // namespace

CapabilityStatus status(Platform& platform, const std::string& homeDirectoryPath) {
    const std::string home = standardizedPath(expandedTilde(homeDirectoryPath, platform.environment().homeDirectory()));
    std::optional<std::string> unclear;
    for (const ProtectedPlace& place : platform.filePlaces().protectedPlaces(home)) {
        switch (answerOf(standardizedPath(place.path), platform.fileManager())) {
        case Answer::nothingThere: break;
        case Answer::readable:
            return record(granted, "Vesk.app can reach protected macOS file locations through Full Disk Access.");
        case Answer::blocked:
            return record(denied,
                          "Vesk.app does not have Full Disk Access yet. macOS blocked access to " + place.label + ".");
        case Answer::unclear: unclear = place.label; break;
        }
    }
    if (unclear) return record(denied, "Vesk.app could not verify Full Disk Access from " + *unclear + ".");
    return record(denied, "Vesk.app could not verify Full Disk Access from the standard protected macOS locations on "
                          "this Mac yet.");
}

} // namespace vesk::VeskFullDiskAccessSupport
