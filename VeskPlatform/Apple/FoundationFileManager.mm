#include "VeskPlatform/Apple/FoundationFileManager.hpp"

#import "VeskPlatform/Apple/FoundationFileCopy.hpp"
#import "VeskPlatform/Apple/FoundationFileItems.hpp"
#include "VeskPlatform/Apple/FoundationFileWriting.hpp"
#import "VeskPlatform/Apple/FoundationValues.hpp"
#include "VeskPlatform/Apple/FoundationWorkDirectory.hpp"
#include "VeskPlatform/Apple/SystemDirectoryReader.hpp"
#include "VeskPlatform/Portable/FileDescriptor.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>

namespace vesk {
namespace {

NSFileManager* manager() { return NSFileManager.defaultManager; }

NSFileHandle* openForReading(NSURL* url, const std::string& path) {
    NSError* error = nil;
    NSFileHandle* handle = [NSFileHandle fileHandleForReadingFromURL:url error:&error];
    if (handle == nil) throwFileError(error, path);
    return handle;
}

/// Of a pipe or a device, whose opening would otherwise wait for its other side.
NSFileHandle* openWithoutWaiting(NSURL* url, const std::string& path) {
    const int file = ::open(url.fileSystemRepresentation, O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (file < 0) throw PosixError(errno, path);
    return [[NSFileHandle alloc] initWithFileDescriptor:file closeOnDealloc:YES];
}

} // namespace

std::string FoundationFileManager::currentDirectoryPath() {
    std::string path = utf8(manager().currentDirectoryPath);
    if (path.empty()) throw PosixError(ENOENT, ".");
    return path;
}

void FoundationFileManager::createDirectory(const std::string& path) {
    NSError* error = nil;
    if (![manager() createDirectoryAtURL:usableFileUrl(path)
             withIntermediateDirectories:YES
                              attributes:nil
                                   error:&error])
        throwFileError(error, path);
}

bool FoundationFileManager::fileExists(const std::string& path) {
    NSString* name = namedPath(path);
    return name != nil && [manager() fileExistsAtPath:name];
}

std::optional<FileAttributes> FoundationFileManager::attributes(const std::string& path) {
    const auto item = fileItem(path);
    if (!item) return std::nullopt;
    return FileAttributes{.isDirectory = item->isDirectory, .size = item->size, .modified = item->modified};
}

bool FoundationFileManager::isOrContains(const std::string& folder, const std::string& item) {
    NSString* name = namedPath(folder);
    if (name == nil || !fileExists(item)) return false;
    if (isLink(known(name))) return isSameItem(folder, item);
    // Where a link lies counts as well as what it leads to.
    const std::string place = optionalUtf8(folderOf(usableFileUrl(item)).path).value_or(item);
    return vesk::isOrContains(folder, item) || vesk::isOrContains(folder, place);
}

std::unique_ptr<DirectoryReader> FoundationFileManager::openDirectory(const std::string& path) {
    return std::make_unique<SystemDirectoryReader>(path);
}

std::string FoundationFileManager::firstBytes(const std::string& path, std::size_t count) {
    NSURL* url = usableFileUrl(path);
    const auto item = fileItem(path);
    if (item && item->isDirectory) throw PosixError(EISDIR, path);
    const bool mayWait = item && !item->isRegularFile;
    NSFileHandle* handle = mayWait ? openWithoutWaiting(url, path) : openForReading(url, path);
    NSError* error = nil;
    NSData* data = [handle readDataUpToLength:count error:&error];
    [handle closeAndReturnError:nil];
    if (data == nil) throwFileError(error, path);
    return bytes(data);
}

void FoundationFileManager::writeFile(const std::string& path, std::string_view bytes, ExistingFile existing) {
    writeWholeFile(path, bytes, existing);
}

void FoundationFileManager::copyItem(const std::string& path, const std::string& destination) {
    copyTree(path, destination);
}

/// A system call, since NSFileManager would remove a folder with everything in it.
void FoundationFileManager::removeFile(const std::string& path) {
    if (std::remove(usableFileUrl(path).fileSystemRepresentation) != 0) throw PosixError(errno, path);
}

void FoundationFileManager::removeItem(const std::string& path) {
    NSError* error = nil;
    if (![manager() removeItemAtURL:usableFileUrl(path) error:&error]) throwFileError(error, path);
}

std::unique_ptr<WorkDirectory> FoundationFileManager::makeWorkDirectory(const std::string& prefix) {
    return std::make_unique<FoundationWorkDirectory>(prefix);
}

bool FoundationFileManager::isExecutableFile(const std::string& path) {
    const auto item = fileItem(path);
    return item && item->isRegularFile && [manager() isExecutableFileAtPath:nsString(path)];
}

std::string FoundationFileManager::resolvedPath(const std::string& path) {
    NSString* name = namedPath(path);
    if (name == nil) return path;
    return optionalUtf8(resolvedUrl([NSURL fileURLWithPath:name]).path).value_or(path);
}

} // namespace vesk
