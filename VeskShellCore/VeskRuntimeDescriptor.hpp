#pragma once

#include "VeskSupport/Records.hpp"

#include <array>
#include <string>
#include <string_view>
#include <utility>

namespace vesk {

/// A packaged runtime that is usable, and every path that its client needs. Paths are absolute.
struct VeskRuntimeDescriptor {
    /// Where the manifest was found.
    enum class Source { explicitEnvironment, bundledResource, repoBuild };

    Source source{};
    std::string manifestPath;
    std::string runtimeRoot;
    std::string daemonPath;
    std::string agentPath;
    /// The daemon, which is the tool that its first argument names: `bootstrap` or `settings`.
    std::string bootstrapCLIPath;
    std::string settingsCLIPath;
    /// May name a file that does not exist.
    std::string launcherPath;

    /// For people: "Bundled runtime".
    std::string_view sourceLabel() const;
    bool operator==(const VeskRuntimeDescriptor&) const = default;
};

template <>
inline constexpr auto rawValueTable<VeskRuntimeDescriptor::Source> =
    std::to_array<std::pair<VeskRuntimeDescriptor::Source, std::string_view>>({
        {VeskRuntimeDescriptor::Source::explicitEnvironment, "env"},
        {VeskRuntimeDescriptor::Source::bundledResource, "bundle"},
        {VeskRuntimeDescriptor::Source::repoBuild, "repo"},
    });

} // namespace vesk
