#pragma once

#import <Foundation/Foundation.h>

#include "VeskSupport/Instant.hpp"

#include <cstdint>
#include <optional>
#include <string>

NS_ASSUME_NONNULL_BEGIN

// What the adapters over Foundation's file verbs share.

namespace vesk {

/// What is at a path, a link followed.
struct FileItem {
    bool isDirectory = false, isRegularFile = false;
    /// Of a regular file.
    std::optional<std::int64_t> size;
    std::optional<Instant> modified;
};

/// None where nothing is there, or where the user may not look.
std::optional<FileItem> fileItem(const std::string& path);

/// Throws PosixError: EISDIR for a folder, EINVAL for what is neither a folder nor a regular file.
void requireRegularFile(const FileItem& item, const std::string& path);

/// Nil for a path that can name nothing: an empty one, one with a null byte, one that is not UTF-8.
NSString* _Nullable namedPath(const std::string& path);

/// The file URL of a path that something is done with. Throws PosixError: ENOENT for an empty path, EINVAL for one with
/// a null byte; ErrorRecord for what is not UTF-8.
NSURL* usableFileUrl(const std::string& path);

/// With all links resolved as far as it exists; itself where the system gives none.
NSURL* resolvedUrl(NSURL* url);

/// The folder that it lies in; itself where the system gives none.
NSURL* folderOf(NSURL* url);

/// Throws a failure of a file verb as the system words it. Where it brings no number of a system call, the one that its
/// Cocoa code stands for is put under it.
[[noreturn]] void throwFileError(NSError* _Nullable error, const std::string& path);

/// The number of the system call that a failure comes from, or that its Cocoa code stands for; EIO for others.
int systemErrorNumberOf(NSError* _Nullable error);

} // namespace vesk

NS_ASSUME_NONNULL_END
