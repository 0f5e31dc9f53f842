#pragma once

#include "VeskPlatform/Platform.hpp"
#include "VeskShellCore/ICloudModels.hpp"

#include <optional>
#include <string>

/// Files of the user's cloud, through the plain file system below the root of a scope. Each call resolves that root
/// afresh, keeps nothing, and blocks the calling thread. Paths are relative to the root; links below it are followed.
///
/// Throws ICloudError; errors of the file manager pass through. A read that meets a text which is no UTF-8 throws the
/// error "NSCocoaErrorDomain" 261, a write of one 517.
namespace vesk::VeskICloudOperations {

CapabilityICloudRootResponse rootResponse(Platform& platform, CapabilityICloudScope scope, const Bundle& bundle);

/// Up to 200 items that are not hidden, the first that the system gives, folders before files and by name. No path
/// means the root.
CapabilityICloudListResponse list(Platform& platform, const std::optional<std::string>& relativePath,
                                  CapabilityICloudScope scope, const Bundle& bundle);

/// A path with nothing there is no failure.
CapabilityICloudStatResponse stat(Platform& platform, const std::optional<std::string>& relativePath,
                                  CapabilityICloudScope scope, const Bundle& bundle);

/// A file of up to 1 GiB; "NSPOSIXErrorDomain" EFBIG beyond that.
CapabilityICloudReadTextResponse readText(Platform& platform, const std::string& relativePath,
                                          CapabilityICloudScope scope, const Bundle& bundle);

/// Makes the folders above it. Whatever fails, the file that was there stays as it was.
CapabilityICloudWriteTextResponse writeText(Platform& platform, const std::string& relativePath,
                                            const std::string& text, bool overwrite, CapabilityICloudScope scope,
                                            const Bundle& bundle);

CapabilityICloudMakeDirectoryResponse makeDirectory(Platform& platform, const std::string& relativePath,
                                                    CapabilityICloudScope scope, const Bundle& bundle);

/// Copies an item to a local path, relative to the current directory, and makes the folders above it. A link is copied
/// as one, but for the root. Whatever is at the output is removed first, a folder with everything in it; where that or
/// the copying then fails, the failure says what is lost. An output that is the item itself, lies in it or around it is
/// refused with "NSPOSIXErrorDomain" EINVAL before anything changes, a blank one with ENOENT.
CapabilityICloudExportResponse exportItem(Platform& platform, const std::string& relativePath,
                                          const std::string& outputPath, CapabilityICloudScope scope,
                                          const Bundle& bundle);

} // namespace vesk::VeskICloudOperations
