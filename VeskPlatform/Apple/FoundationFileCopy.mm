#import "VeskPlatform/Apple/FoundationFileCopy.hpp"

#import "VeskPlatform/Apple/FoundationFileItems.hpp"
#import "VeskPlatform/Apple/FoundationValues.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <cerrno>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>

namespace vesk {
namespace {

NSFileManager* manager() { return NSFileManager.defaultManager; }

/// Of what stands at the path itself, which may be a link; nil where nothing does.
NSFileAttributeType _Nullable typeOf(NSString* path) {
    return [manager() attributesOfItemAtPath:path error:nil][NSFileType];
}

/// What is not there is left to the copying, whose failure says why.
void requireCopyable(NSURL* source, const std::string& path) {
    NSString* name = source.path;
    NSFileAttributeType type = name == nil ? nil : typeOf(name);
    NSArray<NSFileAttributeType>* copyable = @[ NSFileTypeRegular, NSFileTypeDirectory, NSFileTypeSymbolicLink ];
    if (type != nil && ![copyable containsObject:type]) throw PosixError(EINVAL, path);
}

void requireOutside(NSURL* source, NSURL* target, const std::string& destination) {
    NSString* name = source.path;
    NSString* place = folderOf(target).path;
    if (name == nil || place == nil || isLink(known(name))) return;
    if (isOrContains(utf8(known(name)), utf8(known(place)))) throw PosixError(EINVAL, destination);
}

} // namespace

bool isLink(NSString* path) { return [typeOf(path) isEqual:NSFileTypeSymbolicLink]; }

bool isSameItem(const std::string& path, const std::string& other) {
    struct stat one {};
    struct stat two {};
    return ::lstat(path.c_str(), &one) == 0 && ::lstat(other.c_str(), &two) == 0 && one.st_dev == two.st_dev
           && one.st_ino == two.st_ino;
}

bool isOrContains(const std::string& folder, const std::string& item) {
    std::error_code failure;
    std::filesystem::path place = std::filesystem::canonical(item, failure);
    while (!failure) {
        if (std::filesystem::equivalent(folder, place, failure)) return true;
        if (place == place.parent_path()) return false;
        place = place.parent_path();
    }
    return false;
}

void copyTree(const std::string& path, const std::string& destination) {
    NSURL* source = usableFileUrl(path);
    NSURL* target = usableFileUrl(destination);
    NSString* place = target.path;
    if (place != nil && typeOf(place) != nil) throw PosixError(EEXIST, destination);
    requireCopyable(source, path);
    requireOutside(source, target, destination);
    NSError* error = nil;
    if ([manager() copyItemAtURL:source toURL:target error:&error]) return;
    // What is there already was made by somebody else just now.
    if (systemErrorNumberOf(error) != EEXIST) [manager() removeItemAtURL:target error:nil];
    throwFileError(error, path);
}

} // namespace vesk
