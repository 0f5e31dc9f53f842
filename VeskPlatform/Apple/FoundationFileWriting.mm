#include "VeskPlatform/Apple/FoundationFileWriting.hpp"

#import "VeskPlatform/Apple/FoundationFileItems.hpp"
#import "VeskPlatform/Apple/FoundationValues.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <cerrno>

namespace vesk {
namespace {

NSURL* hiddenSibling(NSURL* url) {
    NSString* name = [NSString stringWithFormat:@".vesk-%@.tmp", NSUUID.UUID.UUIDString];
    NSURL* sibling = [folderOf(url) URLByAppendingPathComponent:name];
    if (sibling == nil) throw PosixError(EINVAL, utf8(name));
    return known(sibling);
}

BOOL moveInto(NSURL* hidden, NSURL* url, NSError** error) {
    if ([NSFileManager.defaultManager moveItemAtURL:hidden toURL:url error:error]) return YES;
    [NSFileManager.defaultManager removeItemAtURL:hidden error:nil];
    return NO;
}

/// NSData either writes atomically or without overwriting; a move never overwrites.
BOOL writeNewFile(NSData* data, NSURL* url, NSError** error) {
    NSURL* hidden = hiddenSibling(url);
    return [data writeToURL:hidden options:NSDataWritingAtomic error:error] && moveInto(hidden, url, error);
}

} // namespace

void writeWholeFile(const std::string& path, std::string_view bytes, ExistingFile existing) {
    // An atomic writing puts a new file in a link's place.
    NSURL* url = resolvedUrl(usableFileUrl(path));
    if (path.ends_with('/')) throw PosixError(EISDIR, path);
    if (const auto item = fileItem(path)) {
        requireRegularFile(*item, path);
        if (existing == ExistingFile::keep) throw PosixError(EEXIST, path);
    }
    NSData* data = nsData(bytes);
    NSError* error = nil;
    const BOOL written = existing == ExistingFile::keep
                             ? writeNewFile(data, url, &error)
                             : [data writeToURL:url options:NSDataWritingAtomic error:&error];
    if (!written) throwFileError(error, path);
}

} // namespace vesk
