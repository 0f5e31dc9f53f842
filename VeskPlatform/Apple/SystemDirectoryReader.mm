#include "VeskPlatform/Apple/SystemDirectoryReader.hpp"

#import "VeskPlatform/Apple/FoundationFileItems.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <cerrno>

namespace vesk {
namespace {

constexpr unsigned char folderType = 4;
static_assert(folderType == DT_DIR);

/// For file systems that do not tell the type with the name.
bool isFolder(const std::string& path) {
    NSString* name = namedPath(path);
    if (name == nil) return false;
    NSDictionary<NSFileAttributeKey, id>* attributes = [NSFileManager.defaultManager attributesOfItemAtPath:name
                                                                                                      error:nil];
    NSFileAttributeType type = attributes[NSFileType];
    return [type isEqualToString:NSFileTypeDirectory];
}

} // namespace

SystemDirectoryReader::SystemDirectoryReader(const std::string& path) : path_(path) {
    folder_.reset(::opendir(usableFileUrl(path).fileSystemRepresentation));
    if (!folder_) throw PosixError(errno, path);
}

std::optional<DirectoryEntry> SystemDirectoryReader::next() {
    for (;;) {
        errno = 0;
        const dirent* entry = ::readdir(folder_.get());
        if (entry == nullptr && errno != 0) throw PosixError(errno, path_);
        if (entry == nullptr) return std::nullopt;
        std::string name = entry->d_name;
        if (name == "." || name == "..") continue;
        return DirectoryEntry{.name = std::move(name), .isDirectory = isDirectory(*entry)};
    }
}

bool SystemDirectoryReader::isDirectory(const dirent& entry) const {
    return entry.d_type == folderType || (entry.d_type == DT_UNKNOWN && isFolder(path_ + "/" + entry.d_name));
}

} // namespace vesk
