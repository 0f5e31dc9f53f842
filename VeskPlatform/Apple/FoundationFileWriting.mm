#include "VeskPlatform/Apple/FoundationFileWriting.hpp"

#import "VeskPlatform/Apple/FoundationFileCopy.hpp"
#import "VeskPlatform/Apple/FoundationFileItems.hpp"
#import "VeskPlatform/Apple/FoundationValues.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <cerrno>
#include <cstdio>

namespace vesk {
namespace {

NSURL* hiddenSibling(NSURL* url) {
    NSString* name = [NSString stringWithFormat:@".vesk-%@.tmp", NSUUID.UUID.UUIDString];
    NSURL* sibling = [folderOf(url) URLByAppendingPathComponent:name];
    if (sibling == nil) throw PosixError(EINVAL, utf8(name));
    return known(sibling);
}

/// NSData either writes atomically or without overwriting; a move never overwrites.
BOOL moveBeside(NSURL* hidden, NSURL* url, NSError** error) {
    return [NSFileManager.defaultManager moveItemAtURL:hidden toURL:url error:error];
}

/// A system call, which puts the file in the place of a link itself.
BOOL moveOver(NSURL* hidden, NSURL* url, NSError** error) {
    if (std::rename(hidden.fileSystemRepresentation, url.fileSystemRepresentation) == 0) return YES;
    *error = [NSError errorWithDomain:NSPOSIXErrorDomain code:errno userInfo:nil];
    return NO;
}

BOOL writeBesideAndMove(NSData* data, NSURL* url, BOOL (*move)(NSURL*, NSURL*, NSError**), NSError** error) {
    NSURL* hidden = hiddenSibling(url);
    if ([data writeToURL:hidden options:NSDataWritingAtomic error:error] && move(hidden, url, error)) return YES;
    [NSFileManager.defaultManager removeItemAtURL:hidden error:nil];
    return NO;
}

bool leadsNowhere(const std::string& path) {
    NSString* name = namedPath(path);
    return name != nil && isLink(known(name)) && !fileItem(path);
}

/// An atomic writing puts a new file in a link's place, so that a link is followed first.
BOOL replaceFile(NSData* data, const std::string& path, NSError** error) {
    NSURL* url = usableFileUrl(path);
    if (leadsNowhere(path)) return writeBesideAndMove(data, url, moveOver, error);
    return [data writeToURL:resolvedUrl(url) options:NSDataWritingAtomic error:error];
}

} // namespace

void writeWholeFile(const std::string& path, std::string_view bytes, ExistingFile existing) {
    NSURL* url = usableFileUrl(path);
    if (path.ends_with('/')) throw PosixError(EISDIR, path);
    if (const auto item = fileItem(path)) {
        requireRegularFile(*item, path);
        if (existing == ExistingFile::keep) throw PosixError(EEXIST, path);
    }
    NSData* data = nsData(bytes);
    NSError* error = nil;
    const BOOL written = existing == ExistingFile::keep ? writeBesideAndMove(data, url, moveBeside, &error)
                                                        : replaceFile(data, path, &error);
    if (!written) throwFileError(error, path);
}

} // namespace vesk
