#include "VeskShellCore/VeskRuntimeLocator.hpp"

#include "VeskPlatform/Environment.hpp"
#include "VeskPlatform/FileManager.hpp"
#include "VeskPlatform/FileReader.hpp"
#include "VeskShellCore/BrokerPaths.hpp"
#include "VeskShellCore/VeskShellError.hpp"
#include "VeskShellCore/WorkingDirectory.hpp"
#include "VeskSupport/FilePath.hpp"
#include "VeskSupport/Text.hpp"

#include <array>
#include <set>
#include <utility>

namespace vesk {

std::string_view VeskRuntimeDescriptor::sourceLabel() const {
    switch (source) {
    case Source::explicitEnvironment: return "Explicit runtime manifest";
    case Source::bundledResource: return "Bundled runtime";
    case Source::repoBuild: break;
    }
    return "Repo packaged runtime";
}

namespace VeskRuntimeLocator {
namespace {

using Source = VeskRuntimeDescriptor::Source;
using Candidate = std::pair<Source, std::string>;

constexpr std::string_view daemonBinary = "bin/vesk-daemon", agentBinary = "bin/vesk-agent";

/// Beside the two executables, these are the runtime's own business.
struct RuntimeManifest {
    std::string runtimeVersion, daemonBinary, agentBinary, defaultSkillSeedManifest, connectorCatalog,
        platformToolCatalog;
};

} // namespace
} // namespace VeskRuntimeLocator

template <>
inline constexpr auto recordTable<VeskRuntimeLocator::RuntimeManifest> = recordFields(
    required("runtime_version", &VeskRuntimeLocator::RuntimeManifest::runtimeVersion),
    required("daemon_binary", &VeskRuntimeLocator::RuntimeManifest::daemonBinary),
    required("agent_binary", &VeskRuntimeLocator::RuntimeManifest::agentBinary),
    required("default_skill_seed_manifest", &VeskRuntimeLocator::RuntimeManifest::defaultSkillSeedManifest),
    required("connector_catalog", &VeskRuntimeLocator::RuntimeManifest::connectorCatalog),
    required("platform_tool_catalog", &VeskRuntimeLocator::RuntimeManifest::platformToolCatalog));

namespace VeskRuntimeLocator {
namespace {

const std::set<std::string, std::less<>>& runtimeManifestKeys() {
    static const std::set<std::string, std::less<>> keys{"runtime_version",   "daemon_binary",
                                                         "agent_binary",      "default_skill_seed_manifest",
                                                         "connector_catalog", "platform_tool_catalog"};
    return keys;
}

template <class Work> auto orInvalidManifest(Work work) {
    try {
        return work();
    } catch (const VeskShellError&) {
        throw;
    } catch (const ErrorRecord& error) {
        throw VeskShellError::invalidManifest(error.description());
    }
}

void checkKeys(const JsonValue& root) {
    const auto* object = std::get_if<JsonValue::Object>(&root.value);
    if (object == nullptr) throw VeskShellError::invalidManifest("manifest root must be an object");
    std::vector<std::string> unsupported; // in ascending order, as the object is
    for (const auto& [key, value] : *object)
        if (!runtimeManifestKeys().contains(key)) unsupported.push_back(key);
    if (!unsupported.empty()) throw VeskShellError::invalidManifest("unsupported fields: " + joined(unsupported, ", "));
}

void checkName(const char* key, const std::string& value, std::string_view expected) {
    if (value != expected)
        throw VeskShellError::invalidManifest(std::string(key) + " must be " + std::string(expected));
}

void checkExecutable(FileManager& files, const char* key, const std::string& path) {
    if (!files.isExecutableFile(path))
        throw VeskShellError::invalidManifest(std::string(key) + " is not executable at " + path);
}

std::optional<Candidate> explicitCandidate(Environment& environment) {
    const auto path = trimmedOrAbsent(environment.value("VESK_RUNTIME_MANIFEST"));
    if (!path) return std::nullopt;
    return Candidate{Source::explicitEnvironment, *path};
}

std::optional<Candidate> bundledCandidate(const Bundle& bundle) {
    if (!bundle.resourcesPath) return std::nullopt;
    return Candidate{Source::bundledResource, *bundle.resourcesPath + "/vesk-runtime/manifest.json"};
}

std::string below(const std::string& directory, std::string_view path) {
    return (directory == "/" ? "" : directory) + "/" + std::string(path);
}

std::vector<Candidate> candidates(Platform& platform, const std::string& currentDirectory, bool prefer) {
    std::array<std::optional<Candidate>, 2> first{explicitCandidate(platform.environment()),
                                                  bundledCandidate(platform.mainBundle())};
    if (prefer) std::swap(first[0], first[1]);
    std::vector<Candidate> found;
    for (auto& candidate : first)
        if (candidate) found.push_back(std::move(*candidate));
    for (const std::string& directory : ascendingDirectories(platform, currentDirectory))
        found.emplace_back(Source::repoBuild, below(directory, ".build/vesk-runtime/manifest.json"));
    return found;
}

} // namespace

bool shouldPreferBundledResources(Platform& platform, std::optional<bool> prefer) {
    if (prefer) return *prefer;
    if (platform.environment().value("VESK_SHELL_ALLOW_ENV_OVERRIDE") == "1") return false;
    return bundlePath(platform.mainBundle()).has_value();
}

std::vector<std::string> ascendingDirectories(Platform& platform, const std::string& directory) {
    FileManager& files = platform.fileManager();
    std::string path = files.resolvedPath(standardizedPath(absolutePath(files, directory)));
    std::vector<std::string> found{path};
    while (path != "/") {
        path = parentFolder(path);
        found.push_back(path);
    }
    return found;
}

VeskRuntimeDescriptor descriptor(Platform& platform, Source source, const std::string& manifestPath) {
    const JsonLimits limits;
    const std::string text = platform.fileReader().contents(manifestPath, limits.bytes);
    const JsonValue root = orInvalidManifest([&] { return parseJson(text, limits); });
    checkKeys(root);
    const auto manifest = orInvalidManifest([&] { return fromJson<RuntimeManifest>(root); });
    checkName("daemon_binary", manifest.daemonBinary, daemonBinary);
    checkName("agent_binary", manifest.agentBinary, agentBinary);

    VeskRuntimeDescriptor found;
    found.source = source;
    found.manifestPath = manifestPath;
    found.runtimeRoot = parentFolder(manifestPath);
    found.daemonPath = below(found.runtimeRoot, daemonBinary);
    found.agentPath = below(found.runtimeRoot, agentBinary);
    checkExecutable(platform.fileManager(), "daemon_binary", found.daemonPath);
    checkExecutable(platform.fileManager(), "agent_binary", found.agentPath);
    found.bootstrapCLIPath = found.daemonPath;
    found.settingsCLIPath = found.daemonPath;
    found.launcherPath = below(found.runtimeRoot, "bin/vesk-launcher");
    return found;
}

VeskRuntimeDescriptor resolve(Platform& platform, const std::string& currentDirectory,
                              std::optional<bool> preferBundledResources) {
    FileManager& files = platform.fileManager();
    const bool prefer = shouldPreferBundledResources(platform, preferBundledResources);
    const std::vector<Candidate> all = candidates(platform, currentDirectory, prefer);
    std::vector<std::string> paths;
    for (const auto& [source, candidate] : all) {
        const std::string path = absolutePath(files, candidate);
        if (files.fileExists(path)) return descriptor(platform, source, path);
        paths.push_back(path);
    }
    throw VeskShellError::runtimeManifestNotFound(paths);
}

} // namespace VeskRuntimeLocator
} // namespace vesk
