#include "VeskShellCore/ICloudListing.hpp"

#include "VeskShellCore/ICloudError.hpp"
#include "VeskShellCore/ICloudPaths.hpp"
#include "VeskSupport/Text.hpp"

#include <algorithm>
#include <memory>
#include <utility>

namespace vesk {
namespace {

bool isHidden(const DirectoryEntry& entry) { return entry.name.starts_with('.'); }

std::unique_ptr<DirectoryReader> openListed(FileManager& files, const std::string& path) {
    try {
        return files.openDirectory(path);
    } catch (const ErrorRecord& error) {
        throw ICloudError(systemErrorNumber(error).value_or(error.code()),
                          "Unable to open the requested iCloud directory.");
    }
}

/// How many items one folder has; its folders go to `pending`.
std::int64_t countIn(FileManager& files, const std::string& folder, std::vector<std::string>& pending) {
    std::int64_t count = 0;
    try {
        const auto reader = files.openDirectory(folder);
        while (const auto entry = reader->next()) {
            if (isHidden(*entry)) continue;
            ++count;
            if (entry->isDirectory) pending.push_back(folder + "/" + entry->name);
        }
    } catch (const ErrorRecord&) { // what was read until then counts
    }
    return count;
}

} // namespace

std::vector<CapabilityICloudEntry> listDirectoryEntries(FileManager& files, const std::string& path,
                                                        const std::optional<std::string>& baseRelativePath,
                                                        std::size_t limit) {
    std::vector<CapabilityICloudEntry> entries;
    const auto reader = openListed(files, path);
    while (entries.size() < limit) {
        const auto entry = reader->next();
        if (!entry) break;
        if (isHidden(*entry)) continue;
        std::string name = repairedUtf8(entry->name);
        std::string relativePath = appendRelativePath(baseRelativePath, name);
        entries.push_back({.name = std::move(name),
                           .relativePath = std::move(relativePath),
                           .isDirectory = entry->isDirectory,
                           .sizeBytes = {},
                           .modifiedAtMs = {}});
    }
    return entries;
}

void sortEntries(std::vector<CapabilityICloudEntry>& entries, const std::string& locale) {
    const CaseInsensitiveCollator collator(locale);
    std::ranges::stable_sort(entries, [&](const CapabilityICloudEntry& a, const CapabilityICloudEntry& b) {
        if (a.isDirectory != b.isDirectory) return a.isDirectory;
        return collator.compare(a.name, b.name) < 0;
    });
}

std::int64_t countItems(FileManager& files, const std::string& folder) {
    std::int64_t count = 0;
    std::vector<std::string> pending{folder};
    while (!pending.empty()) {
        const std::string next = std::move(pending.back());
        pending.pop_back();
        count += countIn(files, next, pending);
    }
    return count;
}

} // namespace vesk
