#include "VeskPlatform/Linux/Vdir/CollectionTree.hpp"

#include "VeskPlatform/Linux/Vdir/Folder.hpp"
#include "VeskSupport/ErrorRecord.hpp"
#include "VeskSupport/Text.hpp"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <tuple>
#include <unistd.h>

namespace vesk::vdir {
namespace {

/// What the names in a folder say about it.
struct Inventory {
    bool hasItemsOrNames = false;
    std::vector<std::string> folders;
};

Inventory takeInventory(const std::string& path, const std::string& extension) {
    Inventory inventory;
    forEachEntry(path, [&](const FolderEntry& entry) {
        const bool named = entry.name == "displayname" || entry.name == "color" || hasExtension(entry.name, extension);
        if (entry.isFolder())
            inventory.folders.emplace_back(entry.name);
        else if (named)
            inventory.hasItemsOrNames = true;
        return !inventory.hasItemsOrNames; // a collection it is, whatever else it holds
    });
    return inventory;
}

std::vector<std::string> subFolders(const std::string& path) {
    std::vector<std::string> folders;
    forEachEntry(path, [&](const FolderEntry& entry) {
        if (entry.isFolder()) folders.emplace_back(entry.name);
        return true;
    });
    return folders;
}

std::string titleOf(const std::string& path, std::string_view folderName) {
    constexpr std::size_t longestTitle = 65536;
    std::string title;
    try {
        title = readRegularFile(path + "/displayname", longestTitle);
    } catch (const PosixError&) {
        // No title of its own, or none that can be read: the folder's name serves.
    }
    while (title.ends_with('\n') || title.ends_with('\r')) title.pop_back();
    return repairedUtf8(title.empty() ? folderName : title);
}

bool isWritable(const std::string& path) { return ::faccessat(AT_FDCWD, path.c_str(), W_OK | X_OK, AT_EACCESS) == 0; }

bool holdsItems(const std::string& path, const std::string& extension) {
    bool found = false;
    forEachEntry(path, [&](const FolderEntry& entry) {
        found = entry.isRegularFile() && hasExtension(entry.name, extension);
        return !found;
    });
    return found;
}

std::string_view lastComponent(std::string_view path) { return path.substr(path.rfind('/') + 1); }

} // namespace

std::vector<Collection> findCollections(const std::string& root, const std::string& extension,
                                        const std::function<void(const std::string&, int)>& unreadable, RootIs rootIs) {
    std::vector<Collection> result;
    const auto add = [&](const std::string& relative, const std::string& account) {
        Collection collection;
        collection.path = root + "/" + relative;
        collection.identifier = repairedUtf8(relative);
        collection.title = titleOf(collection.path, lastComponent(relative));
        collection.sourceTitle = account.empty() ? "On This Computer" : repairedUtf8(account);
        collection.writable = isWritable(collection.path);
        result.push_back(std::move(collection));
    };
    const auto readable = [&](const std::string& relative) {
        const std::string path = root + "/" + relative;
        if (::faccessat(AT_FDCWD, path.c_str(), R_OK | X_OK, AT_EACCESS) == 0) return true;
        if (errno != ENOENT) unreadable(path, errno);
        return false;
    };
    const auto inventoryOf = [&](const std::string& relative) -> std::optional<Inventory> {
        if (!readable(relative)) return std::nullopt;
        try {
            return takeInventory(root + "/" + relative, extension);
        } catch (const PosixError& error) {
            if (error.code() != ENOENT) unreadable(root + "/" + relative, static_cast<int>(error.code()));
            return std::nullopt; // gone, or closed, since it was listed
        }
    };
    std::vector<std::string> topFolders;
    try {
        topFolders = subFolders(root);
    } catch (const PosixError& error) {
        if (error.code() == ENOENT) return result;
        throw;
    }
    if (rootIs == RootIs::collectionWhereItHoldsItems && holdsItems(root, extension))
        result.push_back({root, "", titleOf(root, lastComponent(root)), "On This Computer", isWritable(root)});
    for (const std::string& top : topFolders) {
        const auto inventory = inventoryOf(top);
        if (!inventory) continue;
        if (inventory->hasItemsOrNames || inventory->folders.empty()) {
            add(top, "");
            continue;
        }
        for (const std::string& sub : inventory->folders)
            if (readable(top + "/" + sub)) add(top + "/" + sub, top);
    }
    std::sort(result.begin(), result.end(), [](const auto& a, const auto& b) {
        return std::tie(a.identifier, a.path) < std::tie(b.identifier, b.path);
    });
    return result;
}

} // namespace vesk::vdir
