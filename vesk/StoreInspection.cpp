#include "vesk/StoreInspection.hpp"

#include <filesystem>
#include <unistd.h>
#include <vector>

namespace vesk {

namespace {

namespace fs = std::filesystem;

struct FolderContents {
    std::vector<fs::path> folders;
    std::int64_t files = 0, unreadableFiles = 0;
    bool readable = true, marked = false;
};

FolderContents contentsOf(const fs::path& folder, const std::string& extension) {
    FolderContents contents;
    std::error_code error;
    for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
        const fs::path& path = it->path();
        if (path.filename().string().starts_with('.')) continue;
        std::error_code unknown;
        if (it->is_directory(unknown)) {
            contents.folders.push_back(path);
        } else if (path.extension() == extension) {
            ++contents.files;
            if (::access(path.c_str(), R_OK) != 0) ++contents.unreadableFiles;
        } else if (path.filename() == "displayname" || path.filename() == "color") {
            contents.marked = true;
        }
    }
    contents.readable = !error;
    return contents;
}

void add(const FolderContents& collection, StoreReport& report) {
    ++report.collections;
    report.files += collection.files;
    report.unreadableFiles += collection.unreadableFiles;
    if (!collection.readable) ++report.unreadableFolders;
}

} // namespace

StoreReport inspectStore(const std::string& root, const std::string& extension) {
    StoreReport report{.path = root, .unparsableFiles = std::nullopt};
    std::error_code unknown;
    report.exists = !root.empty() && fs::is_directory(root, unknown);
    if (!report.exists) return report;
    const FolderContents top = contentsOf(root, extension);
    if (!top.readable) ++report.unreadableFolders;
    for (const fs::path& folder : top.folders) {
        const FolderContents contents = contentsOf(folder, extension);
        if (contents.files > 0 || contents.marked || contents.folders.empty()) {
            add(contents, report);
            continue;
        }
        for (const fs::path& inner : contents.folders) add(contentsOf(inner, extension), report);
    }
    return report;
}

} // namespace vesk
