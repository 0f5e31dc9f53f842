#pragma once

#include "VeskPlatform/Platform.hpp"
#include "VeskShellCore/VeskRuntimeDescriptor.hpp"

#include <optional>
#include <string>
#include <vector>

/// Finds the packaged runtime: a folder with a manifest and two executables. Every call starts over.
namespace vesk::VeskRuntimeLocator {

/// The first manifest that exists among the explicit one (VESK_RUNTIME_MANIFEST), the one in the bundle's resources,
/// and those of builds in `currentDirectory` or above it. One that exists and is no good ends the search. Throws
/// VeskShellError, and PosixError for a manifest that cannot be read.
VeskRuntimeDescriptor resolve(Platform& platform, const std::string& currentDirectory,
                              std::optional<bool> preferBundledResources = std::nullopt);

/// Loads and proves one manifest. Throws as above.
VeskRuntimeDescriptor descriptor(Platform& platform, VeskRuntimeDescriptor::Source source,
                                 const std::string& manifestPath);

/// Whether what the bundle holds comes before what the environment names: as `prefer` says, else not where
/// VESK_SHELL_ALLOW_ENV_OVERRIDE is "1", else where the program runs from an application.
bool shouldPreferBundledResources(Platform& platform, std::optional<bool> prefer);

/// The directory and all above it, up to "/", links resolved.
std::vector<std::string> ascendingDirectories(Platform& platform, const std::string& directory);

} // namespace vesk::VeskRuntimeLocator
