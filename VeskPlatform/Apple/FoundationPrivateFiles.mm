#include "VeskPlatform/Apple/FoundationPrivateFiles.hpp"

#import "VeskPlatform/Apple/FoundationFileItems.hpp"
#import "VeskPlatform/Apple/FoundationValues.hpp"
#include "VeskPlatform/Portable/FileDescriptor.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vesk {
namespace {

NSDictionary<NSFileAttributeKey, id>* permissions(unsigned mode) {
    return @{NSFilePosixPermissions : @(mode)};
}

/// The system would read only what stands before a null byte.
const char* systemPath(const std::string& path) {
    if (path.find('\0') != std::string::npos) throw PosixError(EINVAL, path.c_str());
    return path.c_str();
}

void requireSuccess(BOOL succeeded, NSError* _Nullable error, const std::string& path) {
    if (!succeeded) throwFileError(error, path);
}

/// Opening a pipe would wait for its reader. What is not there is left to the opening, whose failure says why.
NSFileHandle* openForWriting(const std::string& path) {
    if (const auto item = fileItem(path)) requireRegularFile(*item, path);
    NSError* error = nil;
    NSFileHandle* handle = [NSFileHandle fileHandleForWritingToURL:usableFileUrl(path) error:&error];
    if (handle == nil) throwFileError(error, path);
    return handle;
}

/// Closes the file however the work on it has ended; the first failure counts.
void finish(NSFileHandle* handle, BOOL succeeded, NSError* _Nullable error, const std::string& path) {
    NSError* closing = nil;
    const BOOL closed = [handle closeAndReturnError:&closing];
    requireSuccess(succeeded, error, path);
    requireSuccess(closed, closing, path);
}

BOOL replaceContents(NSFileHandle* handle, NSData* data, NSError** error) {
    return [handle truncateAtOffset:0 error:error] && [handle writeData:data error:error] &&
           [handle synchronizeAndReturnError:error];
}

BOOL addAtEnd(NSFileHandle* handle, NSData* data, NSError** error) {
    unsigned long long end = 0;
    return [handle seekToEndReturningOffset:&end error:error] && [handle writeData:data error:error];
}

} // namespace

void FoundationPrivateFiles::createDirectories(const std::string& path, unsigned mode) {
    NSError* error = nil;
    const BOOL created = [NSFileManager.defaultManager createDirectoryAtURL:usableFileUrl(path)
                                                withIntermediateDirectories:YES
                                                                 attributes:permissions(mode)
                                                                      error:&error];
    requireSuccess(created, error, path);
}

void FoundationPrivateFiles::setPermissions(const std::string& path, unsigned mode) {
    NSString* name = namedPath(path);
    if (name == nil) throw PosixError(path.empty() ? ENOENT : EINVAL, path.c_str());
    NSError* error = nil;
    const BOOL set = [NSFileManager.defaultManager setAttributes:permissions(mode) ofItemAtPath:name error:&error];
    requireSuccess(set, error, path);
}

bool FoundationPrivateFiles::exists(const std::string& path) {
    NSString* name = namedPath(path);
    return name != nil && [NSFileManager.defaultManager fileExistsAtPath:name];
}

/// A system call, since NSFileManager would replace what is there.
void FoundationPrivateFiles::createFile(const std::string& path, unsigned mode) {
    const auto bits = static_cast<mode_t>(mode);
    const FileDescriptor file(::open(systemPath(path), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, bits));
    if (!file) throw PosixError(errno, path);
    if (::fchmod(file.get(), bits) == 0) return; // the mask may have taken some of it
    const int failure = errno;
    (void)::unlink(path.c_str());
    throw PosixError(failure, path);
}

void FoundationPrivateFiles::writeThrough(const std::string& path, std::string_view bytes) {
    NSFileHandle* handle = openForWriting(path);
    NSError* error = nil;
    const BOOL replaced = replaceContents(handle, nsData(bytes), &error);
    finish(handle, replaced, error, path);
}

void FoundationPrivateFiles::rename(const std::string& path, const std::string& newPath) {
    if (::rename(systemPath(path), systemPath(newPath)) != 0) throw PosixError(errno, newPath);
    // The file has its new name by now, so nothing may fail any more; it is as durable as the system makes it.
    NSURL* above = folderOf(usableFileUrl(newPath));
    const FileDescriptor folder(::open(above.fileSystemRepresentation, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder) (void)::fsync(folder.get());
}

/// A system call, since NSFileManager would remove a folder with everything in it.
void FoundationPrivateFiles::removeFile(const std::string& path) {
    if (::unlink(systemPath(path)) == 0) return;
    const int failure = errno;
    const auto item = fileItem(path);
    // This is what the system says of a folder.
    throw PosixError(failure == EPERM && item && item->isDirectory ? EISDIR : failure, path);
}

void FoundationPrivateFiles::append(const std::string& path, std::string_view bytes) {
    NSFileHandle* handle = openForWriting(path);
    NSError* error = nil;
    const BOOL appended = addAtEnd(handle, nsData(bytes), &error);
    finish(handle, appended, error, path);
}

/// Made for the user alone from the start, which NSData's own atomic writing is not.
void FoundationPrivateFiles::writeAtomically(const std::string& path, std::string_view bytes) {
    const std::string temporary = path + "." + utf8(NSUUID.UUID.UUIDString);
    createFile(temporary, 0600);
    try {
        writeThrough(temporary, bytes);
        rename(temporary, path);
    } catch (...) {
        (void)::unlink(temporary.c_str());
        throw;
    }
}

} // namespace vesk
