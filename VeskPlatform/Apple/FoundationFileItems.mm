#import "VeskPlatform/Apple/FoundationFileItems.hpp"

#import "VeskPlatform/Apple/FoundationErrors.hpp"
#import "VeskPlatform/Apple/FoundationValues.hpp"
#include "VeskSupport/ErrorRecord.hpp"
#include "VeskSupport/Text.hpp"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <iterator>
#include <memory>

namespace vesk {
namespace {

struct CodeMeaning {
    NSInteger cocoaCode;
    int systemErrorNumber;
};

constexpr CodeMeaning codeMeanings[] = {
    {NSFileNoSuchFileError, ENOENT},          {NSFileReadNoSuchFileError, ENOENT},
    {NSFileReadNoPermissionError, EACCES},    {NSFileWriteNoPermissionError, EACCES},
    {NSFileReadInvalidFileNameError, EINVAL}, {NSFileWriteInvalidFileNameError, EINVAL},
    {NSFileReadTooLargeError, EFBIG},         {NSFileWriteFileExistsError, EEXIST},
    {NSFileWriteOutOfSpaceError, ENOSPC},     {NSFileWriteVolumeReadOnlyError, EROFS},
};

// The code by which the core knows that reading was denied.
static_assert(NSFileReadNoPermissionError == 257);

int meaningOf(const ErrorRecord& error) {
    if (error.domain() != utf8(NSCocoaErrorDomain)) return EIO;
    const auto* const meaning = std::ranges::find(codeMeanings, error.code(), &CodeMeaning::cocoaCode);
    return meaning == std::end(codeMeanings) ? EIO : meaning->systemErrorNumber;
}

bool hasNullByte(const std::string& path) { return path.find('\0') != std::string::npos; }

/// Cut towards 1970, which is not how other dates are cut.
Instant dateOf(NSDate* date) {
    // A date counts from another year, so that a whole millisecond comes back as a few parts of a million less.
    constexpr double rounding = 0.001;
    const double milliseconds = date.timeIntervalSince1970 * 1'000.0;
    const std::chrono::duration<double, std::milli> sinceEpoch{milliseconds + std::copysign(rounding, milliseconds)};
    return Instant(std::chrono::duration_cast<Instant::duration>(sinceEpoch));
}

/// Resource values are those of a link itself, so it is resolved first.
void readResourceValues(NSString* path, FileItem& item) {
    NSArray<NSURLResourceKey>* keys = @[ NSURLIsRegularFileKey, NSURLFileSizeKey, NSURLContentModificationDateKey ];
    NSURL* url = resolvedUrl([NSURL fileURLWithPath:path]);
    NSDictionary<NSURLResourceKey, id>* values = [url resourceValuesForKeys:keys error:nil];
    NSNumber* isRegularFile = values[NSURLIsRegularFileKey];
    NSNumber* size = values[NSURLFileSizeKey];
    NSDate* modified = values[NSURLContentModificationDateKey];
    item.isRegularFile = isRegularFile.boolValue;
    if (item.isRegularFile && size != nil) item.size = size.longLongValue;
    if (modified != nil) item.modified = dateOf(modified);
}

} // namespace

std::optional<FileItem> fileItem(const std::string& path) {
    NSString* name = namedPath(path);
    BOOL isDirectory = NO;
    if (name == nil || ![NSFileManager.defaultManager fileExistsAtPath:name isDirectory:&isDirectory])
        return std::nullopt;
    FileItem item;
    item.isDirectory = isDirectory;
    readResourceValues(name, item);
    return item;
}

void requireRegularFile(const FileItem& item, const std::string& path) {
    if (item.isDirectory) throw PosixError(EISDIR, path);
    if (!item.isRegularFile) throw PosixError(EINVAL, path);
}

NSString* _Nullable namedPath(const std::string& path) {
    if (path.empty() || hasNullByte(path) || !isWellFormedUtf8(path)) return nil;
    return nsString(path);
}

NSURL* usableFileUrl(const std::string& path) {
    if (path.empty()) throw PosixError(ENOENT, path);
    if (hasNullByte(path)) throw PosixError(EINVAL, path.c_str());
    return fileUrl(path);
}

NSURL* resolvedUrl(NSURL* url) {
    NSURL* resolved = [url URLByResolvingSymlinksInPath];
    return resolved != nil ? resolved : url;
}

NSURL* folderOf(NSURL* url) {
    NSURL* folder = [url URLByDeletingLastPathComponent];
    return folder != nil ? folder : url;
}

void throwFileError(NSError* _Nullable error, const std::string& path) {
    const ErrorRecord record = errorRecord(error);
    if (systemErrorNumber(record)) throw record;
    throw ErrorRecord(record.domain(), record.code(), record.description(),
                      std::make_shared<const PosixError>(meaningOf(record), path));
}

int systemErrorNumberOf(NSError* _Nullable error) {
    const ErrorRecord record = errorRecord(error);
    return systemErrorNumber(record).value_or(meaningOf(record));
}

} // namespace vesk
