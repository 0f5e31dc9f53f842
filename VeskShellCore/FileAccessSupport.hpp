#pragma once

#include "VeskPlatform/Platform.hpp"
#include "VeskShellCore/FileAccessModels.hpp"

#include <string>

namespace vesk::VeskFileAccessSupport {

/// Touches, once, the folder that guards a local path, so that the system asks for it now and not later: one of the
/// platform's guarded folders where the path lies in one, else the nearest folder that is there. A leading "~" is the
/// user's home. Blocks the calling thread and never fails: every outcome is a status.
CapabilityFileAccessResponse prepare(Platform& platform, const std::string& path, const Bundle& bundle,
                                     const std::string& homeDirectoryPath);

} // namespace vesk::VeskFileAccessSupport
