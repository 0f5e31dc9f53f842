#include "VeskPlatform/Apple/FoundationFileReader.hpp"

#import "VeskPlatform/Apple/FoundationFileItems.hpp"
#import "VeskPlatform/Apple/FoundationValues.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <cerrno>

namespace vesk {
namespace {

/// Opening a pipe would wait for its writer. What is not there is left to the reading, whose failure says why.
void requireReadable(const std::string& path, std::uint64_t maximumBytes) {
    const auto item = fileItem(path);
    if (!item) return;
    requireRegularFile(*item, path);
    if (static_cast<std::uint64_t>(item->size.value_or(0)) > maximumBytes) throw PosixError(EFBIG, path);
}

} // namespace

std::string FoundationFileReader::contents(const std::string& path, std::uint64_t maximumBytes) {
    NSURL* url = usableFileUrl(path);
    requireReadable(path, maximumBytes);
    NSError* error = nil;
    NSData* data = [NSData dataWithContentsOfURL:url options:0 error:&error];
    if (data == nil) throwFileError(error, path);
    if (data.length > maximumBytes) throw PosixError(EFBIG, path); // it may have grown since
    return bytes(data);
}

} // namespace vesk
