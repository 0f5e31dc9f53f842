#include "VeskPlatform/Apple/FoundationWorkDirectory.hpp"

#import "VeskPlatform/Apple/FoundationFileItems.hpp"
#import "VeskPlatform/Apple/FoundationValues.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace vesk {
namespace {

NSFileManager* manager() { return NSFileManager.defaultManager; }

FileDescriptor openFolder(NSURL* url) {
    return FileDescriptor(::open(url.fileSystemRepresentation, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

bool isFree(const FileDescriptor& folder) { return ::flock(folder.get(), LOCK_EX | LOCK_NB) == 0; }

bool isOwn(NSURL* url) {
    NSString* path = url.path;
    if (path == nil) return false;
    NSNumber* owner = [manager() attributesOfItemAtPath:path error:nil][NSFileOwnerAccountID];
    return owner != nil && owner.unsignedIntValue == ::geteuid();
}

/// What cannot be removed stays for the next run.
void removeAbandoned(NSURL* parent, NSString* prefix) {
    NSArray<NSURL*>* items = [manager() contentsOfDirectoryAtURL:parent
                                      includingPropertiesForKeys:nil
                                                         options:0
                                                           error:nil];
    for (NSURL* item in items) {
        if (![item.lastPathComponent hasPrefix:prefix] || !isOwn(item)) continue;
        const FileDescriptor folder = openFolder(item);
        if (folder && isFree(folder)) [manager() removeItemAtURL:item error:nil];
    }
}

void makeFolder(NSURL* url) {
    NSError* error = nil;
    if (![manager() createDirectoryAtURL:url
             withIntermediateDirectories:NO
                              attributes:@{
                                  NSFilePosixPermissions : @0700
                              }
                                   error:&error])
        throwFileError(error, utf8(NSTemporaryDirectory()));
}

} // namespace

/// It gets its name when it is locked already, so that no other run takes it for an abandoned one.
FoundationWorkDirectory::FoundationWorkDirectory(const std::string& prefix) {
    NSURL* parent = [NSURL fileURLWithPath:NSTemporaryDirectory() isDirectory:YES];
    NSString* name = [nsString(prefix) stringByAppendingString:NSUUID.UUID.UUIDString];
    NSURL* unnamed = [parent URLByAppendingPathComponent:[@"." stringByAppendingString:name] isDirectory:YES];
    NSURL* named = [parent URLByAppendingPathComponent:name isDirectory:YES];
    removeAbandoned(parent, nsString(prefix));
    makeFolder(unnamed);
    path_ = optionalUtf8(named.path).value_or("");
    NSError* error = nil;
    lock_ = openFolder(unnamed);
    if (lock_ && isFree(lock_) && [manager() moveItemAtURL:unnamed toURL:named error:&error]) return;
    const int failure = errno;
    [manager() removeItemAtURL:unnamed error:nil];
    if (error == nil) throw PosixError(failure, path_);
    throwFileError(error, path_);
}

FoundationWorkDirectory::~FoundationWorkDirectory() {
    [manager() removeItemAtURL:[NSURL fileURLWithPath:nsString(path_) isDirectory:YES] error:nil];
}

} // namespace vesk
