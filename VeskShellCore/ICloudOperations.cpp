#include "VeskShellCore/ICloudOperations.hpp"

#include "VeskPlatform/FileManager.hpp"
#include "VeskPlatform/FileReader.hpp"
#include "VeskPlatform/LocaleSettings.hpp"
#include "VeskShellCore/BundleResponse.hpp"
#include "VeskShellCore/ICloudError.hpp"
#include "VeskShellCore/ICloudListing.hpp"
#include "VeskShellCore/ICloudPaths.hpp"
#include "VeskShellCore/ICloudRoots.hpp"
#include "VeskShellCore/OutputFile.hpp"
#include "VeskSupport/FilePath.hpp"
#include "VeskSupport/Text.hpp"

#include <cerrno>
#include <memory>
#include <utility>

namespace vesk::VeskICloudOperations {
namespace {

constexpr std::size_t listLimit = 200;
constexpr std::uint64_t mostTextBytes = std::uint64_t{1} << 30;
// Numbers of "NSCocoaErrorDomain".
constexpr int readInapplicableEncoding = 261, writeInapplicableEncoding = 517;

/// What one call works on.
struct Target {
    ICloudRoot root;
    std::optional<std::string> relativePath;
    std::string path;
};

Target resolveTarget(Platform& platform, const std::optional<std::string>& relativePath, CapabilityICloudScope scope,
                     const Bundle& bundle) {
    Target target{.root = resolveICloudRoot(platform, scope, bundle), .relativePath = {}, .path = {}};
    target.relativePath = normalizeRelativePath(relativePath);
    const std::string& root = target.root.rootPath;
    target.path = target.relativePath ? (root == "/" ? root : root + "/") + *target.relativePath : root;
    return target;
}

template <class Response> Response responseFor(const ICloudRoot& root, const Bundle& bundle, const char* detail) {
    auto response = responseOf<Response>(bundle);
    response.scope = root.scope;
    response.rootPath = root.rootPath;
    response.containerIdentifier = root.containerIdentifier;
    response.detail = detail;
    return response;
}

/// For the records that name the item with a path that is never absent.
template <class Response> Response itemResponse(const Target& target, const Bundle& bundle, const char* detail) {
    auto response = responseFor<Response>(target.root, bundle, detail);
    response.relativePath = target.relativePath.value_or("");
    response.path = target.path;
    return response;
}

FileAttributes requireExisting(FileManager& files, const Target& target) {
    const auto attributes = files.attributes(target.path);
    if (!attributes) throw ICloudError(404, "The requested iCloud path does not exist.");
    return *attributes;
}

void requireUtf8(const std::string& text, const std::string& path, int code) {
    if (!isWellFormedUtf8(text)) throw ErrorRecord("NSCocoaErrorDomain", code, path + ": The text is not UTF-8.");
}

void writeNewText(FileManager& files, const std::string& path, const std::string& text, bool overwrite) {
    files.createDirectory(parentFolder(path));
    try {
        files.writeFile(path, text, overwrite ? ExistingFile::replace : ExistingFile::keep);
    } catch (const ErrorRecord& error) { // what another program has put there since we looked
        const auto number = systemErrorNumber(error);
        if (number == EEXIST) throw ICloudError(409, "The requested iCloud file already exists.");
        if (number == EISDIR) throw ICloudError(400, "Cannot overwrite an iCloud directory with text content.");
        throw;
    }
}

std::string resolveOutput(FileManager& files, const std::string& outputPath) {
    if (isBlank(outputPath)) throw PosixError(ENOENT, outputPath);
    return outputFilePath(files, outputPath);
}

/// The root may be a link to the user's drive; a copy of the link would hold nothing.
std::string sourceOf(FileManager& files, const Target& target) {
    return target.relativePath ? target.path : files.resolvedPath(target.path);
}

std::string nearestFolderThere(FileManager& files, const std::string& path) {
    std::string folder = parentFolder(path);
    while (folder != "/" && !files.attributes(folder)) folder = parentFolder(folder);
    return folder;
}

/// Removing the one would remove the other, or the copy would grow while it is made.
void requireApart(FileManager& files, const Target& target, const std::string& source, const std::string& output) {
    if (files.isOrContains(output, target.path) || files.isOrContains(source, nearestFolderThere(files, output)))
        throw PosixError(EINVAL, output);
}

[[noreturn]] void failWithLoss(const ErrorRecord& error, const std::string& loss) {
    throw ErrorRecord(error.domain(), error.code(), error.description() + " (" + loss + ")",
                      std::make_shared<const ErrorRecord>(error));
}

/// Whether anything was removed, a link that leads nowhere also counts.
bool removeFormer(FileManager& files, const std::string& output) {
    const auto former = files.attributes(output);
    try {
        files.removeItem(output);
        return true;
    } catch (const ErrorRecord& error) {
        if (systemErrorNumber(error) == ENOENT) return false;
        if (!former || !former->isDirectory) throw;
        failWithLoss(error, "part of what was at " + output + " may already have been removed");
    }
}

void copyOverFormer(FileManager& files, const std::string& source, const std::string& output) {
    const bool removed = removeFormer(files, output);
    try {
        files.copyItem(source, output);
    } catch (const ErrorRecord& error) {
        if (!removed) throw;
        failWithLoss(error, "what was at " + output + " has already been removed");
    }
}

} // namespace

CapabilityICloudRootResponse rootResponse(Platform& platform, CapabilityICloudScope scope, const Bundle& bundle) {
    const ICloudRoot root = resolveICloudRoot(platform, scope, bundle);
    auto response = responseFor<CapabilityICloudRootResponse>(root, bundle, root.detail.c_str());
    response.containerPath = root.containerPath;
    response.documentsPath = root.rootPath;
    return response;
}

CapabilityICloudListResponse list(Platform& platform, const std::optional<std::string>& relativePath,
                                  CapabilityICloudScope scope, const Bundle& bundle) {
    const Target target = resolveTarget(platform, relativePath, scope, bundle);
    FileManager& files = platform.fileManager();
    if (!requireExisting(files, target).isDirectory)
        throw ICloudError(404, "The requested iCloud directory does not exist.");
    auto response =
        responseFor<CapabilityICloudListResponse>(target.root, bundle, "Listed up to 200 items from iCloud contents.");
    response.baseRelativePath = target.relativePath;
    response.documentsPath = target.root.rootPath;
    response.entries = listDirectoryEntries(files, target.path, target.relativePath, listLimit);
    sortEntries(response.entries, platform.localeSettings().locale());
    return response;
}

CapabilityICloudStatResponse stat(Platform& platform, const std::optional<std::string>& relativePath,
                                  CapabilityICloudScope scope, const Bundle& bundle) {
    const Target target = resolveTarget(platform, relativePath, scope, bundle);
    const auto attributes = platform.fileManager().attributes(target.path);
    auto response = responseFor<CapabilityICloudStatResponse>(
        target.root, bundle, attributes ? "Resolved iCloud path." : "The requested iCloud path does not exist yet.");
    response.relativePath = target.relativePath;
    response.path = target.path;
    response.exists = attributes.has_value();
    if (!attributes) return response;
    response.isDirectory = attributes->isDirectory;
    response.sizeBytes = attributes->size;
    if (attributes->modified) response.modifiedAtMs = attributes->modified->time_since_epoch().count();
    return response;
}

CapabilityICloudReadTextResponse readText(Platform& platform, const std::string& relativePath,
                                          CapabilityICloudScope scope, const Bundle& bundle) {
    const Target target = resolveTarget(platform, relativePath, scope, bundle);
    if (requireExisting(platform.fileManager(), target).isDirectory)
        throw ICloudError(404, "The requested iCloud file does not exist or is a directory.");
    auto response = itemResponse<CapabilityICloudReadTextResponse>(target, bundle, "Read text from iCloud.");
    response.text = platform.fileReader().contents(target.path, mostTextBytes);
    requireUtf8(response.text, target.path, readInapplicableEncoding);
    response.sizeBytes = static_cast<std::int64_t>(response.text.size());
    return response;
}

CapabilityICloudWriteTextResponse writeText(Platform& platform, const std::string& relativePath,
                                            const std::string& text, bool overwrite, CapabilityICloudScope scope,
                                            const Bundle& bundle) {
    const Target target = resolveTarget(platform, relativePath, scope, bundle);
    FileManager& files = platform.fileManager();
    const auto former = files.attributes(target.path);
    if (former && former->isDirectory)
        throw ICloudError(400, "Cannot overwrite an iCloud directory with text content.");
    if (former && !overwrite) throw ICloudError(409, "The requested iCloud file already exists.");
    requireUtf8(text, target.path, writeInapplicableEncoding);
    writeNewText(files, target.path, text, overwrite);
    auto response = itemResponse<CapabilityICloudWriteTextResponse>(target, bundle, "Wrote text into iCloud.");
    response.sizeBytes = static_cast<std::int64_t>(text.size());
    return response;
}

CapabilityICloudMakeDirectoryResponse makeDirectory(Platform& platform, const std::string& relativePath,
                                                    CapabilityICloudScope scope, const Bundle& bundle) {
    const Target target = resolveTarget(platform, relativePath, scope, bundle);
    platform.fileManager().createDirectory(target.path);
    return itemResponse<CapabilityICloudMakeDirectoryResponse>(target, bundle, "Created iCloud directory.");
}

CapabilityICloudExportResponse exportItem(Platform& platform, const std::string& relativePath,
                                          const std::string& outputPath, CapabilityICloudScope scope,
                                          const Bundle& bundle) {
    const Target target = resolveTarget(platform, relativePath, scope, bundle);
    FileManager& files = platform.fileManager();
    requireExisting(files, target);
    const auto item = files.attributes(target.path); // it may have gone since
    if (!item) throw ICloudError(404, "The requested iCloud item does not exist.");
    const std::string output = resolveOutput(files, outputPath);
    const std::string source = sourceOf(files, target);
    requireApart(files, target, source, output);
    files.createDirectory(parentFolder(output));
    copyOverFormer(files, source, output);
    auto response = responseFor<CapabilityICloudExportResponse>(
        target.root, bundle,
        item->isDirectory ? "Exported iCloud directory to a local path." : "Exported iCloud file to a local path.");
    response.relativePath = target.relativePath.value_or("");
    response.sourcePath = target.path;
    response.exportedPath = output;
    response.isDirectory = item->isDirectory;
    const auto exported = files.attributes(output);
    if (exported) response.sizeBytes = exported->size;
    if (item->isDirectory) response.itemCount = countItems(files, output);
    return response;
}

} // namespace vesk::VeskICloudOperations
