#import "VeskPlatform/Apple/FoundationFileCopy.hpp"

#import "VeskPlatform/Apple/FoundationFileItems.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <cerrno>

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
    if (name == nil || isLink(name)) return;
    if (isOrContains(source, folderOf(target))) throw PosixError(EINVAL, destination);
}

} // namespace

bool isLink(NSString* path) { return [typeOf(path) isEqual:NSFileTypeSymbolicLink]; }

bool isOrContains(NSURL* folder, NSURL* item) {
    NSURLRelationship relationship = NSURLRelationshipOther;
    return [manager() getRelationship:&relationship ofDirectoryAtURL:folder toItemAtURL:resolvedUrl(item) error:nil]
           && relationship != NSURLRelationshipOther;
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
