#include "VeskShellCore/FileAccessSupport.hpp"

#include "VeskPlatform/Environment.hpp"
#include "VeskPlatform/FileManager.hpp"
#include "VeskPlatform/FilePlaces.hpp"
#include "VeskShellCore/AccessDenial.hpp"
#include "VeskShellCore/BrokerPaths.hpp"
#include "VeskShellCore/PathProbe.hpp"
#include "VeskSupport/FilePath.hpp"
#include "VeskSupport/Text.hpp"

#include <optional>
#include <utility>
#include <vector>

namespace vesk::VeskFileAccessSupport {
namespace {

constexpr int fileNoSuchFile = 4; // of "NSCocoaErrorDomain"

bool liesIn(const std::string& folder, const std::string& path) {
    return path == folder || path.starts_with(folder + "/");
}

std::optional<std::string> guardOf(const std::string& requested, const std::vector<std::string>& guardedFolders) {
    for (const std::string& guarded : guardedFolders) {
        std::string folder = standardizedPath(guarded);
        if (liesIn(folder, requested)) return folder;
    }
    return std::nullopt;
}

/// The nearest folder that is there; the requested path's own parent where nothing below the root is.
std::string nearestFolder(const std::string& requested, FileManager& files) {
    for (std::string path = requested; path != "/"; path = parentFolder(path))
        if (const auto attributes = files.attributes(path)) return attributes->isDirectory ? path : parentFolder(path);
    return parentFolder(requested);
}

void probe(const std::string& path, FileManager& files) {
    const auto attributes = files.attributes(path);
    if (!attributes) throw ErrorRecord("NSCocoaErrorDomain", fileNoSuchFile, "The file doesn’t exist.");
    tryReading(files, path, *attributes);
}

class Preparation {
public:
    explicit Preparation(const Bundle& bundle) {
        response_.brokerPath = shortBundleNameBrokerPath(bundle);
        response_.bundlePath = bundlePath(bundle);
    }

    CapabilityFileAccessResponse withoutProbe(const char* status, const std::string& path, const char* detail) {
        return ended(status, path, detail);
    }

    CapabilityFileAccessResponse probing(const std::string& path, const std::string& probed, FileManager& files) {
        response_.probedPath = probed;
        try {
            probe(probed, files);
            return ended("ready", path, "Vesk.app can access the requested local path.");
        } catch (const ErrorRecord& error) {
            if (isAccessDenied(error))
                return ended("denied", path, "macOS did not grant Vesk access to the requested local path.");
            return ended("error", path, "Vesk.app could not prepare the requested local path: " + error.description());
        }
    }

private:
    CapabilityFileAccessResponse ended(const char* status, const std::string& path, std::string detail) {
        response_.status = status;
        response_.requestedPath = path;
        response_.detail = std::move(detail);
        return std::move(response_);
    }

    CapabilityFileAccessResponse response_;
};

} // namespace

CapabilityFileAccessResponse prepare(Platform& platform, const std::string& path, const Bundle& bundle,
                                     const std::string& homeDirectoryPath) {
    Preparation preparation(bundle);
    const std::string given(trimmed(path));
    if (given.empty())
        return preparation.withoutProbe("invalid", given,
                                        "Vesk.app needs a local path before it can prepare file access.");
    const std::string userHome = platform.environment().homeDirectory();
    const std::string expanded = expandedTilde(given, userHome);
    if (!expanded.starts_with('/'))
        return preparation.withoutProbe("invalid", given,
                                        "Vesk.app needs an absolute local path or a path beginning with ~.");
    const std::string requested = standardizedPath(expanded);
    const std::string home = standardizedPath(expandedTilde(homeDirectoryPath, userHome));
    if (requested == "/" || requested == home)
        return preparation.withoutProbe(
            "broad_access_required", requested,
            "A whole-computer file request may need Full Disk Access instead of a folder-specific prompt.");
    FileManager& files = platform.fileManager();
    const auto guard = guardOf(requested, platform.filePlaces().guardedFolders(home));
    return preparation.probing(requested, guard ? *guard : nearestFolder(requested, files), files);
}

} // namespace vesk::VeskFileAccessSupport
