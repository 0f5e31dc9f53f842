#pragma once

#include "VeskPlatform/Linux/Vdir/CollectionTree.hpp"
#include "VeskPlatform/Linux/Vdir/FileHealth.hpp"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace vesk {

/// What a look over a whole store found, with the paths of what is amiss.
struct VdirSurvey {
    std::size_t collections = 0;
    std::size_t files = 0;
    std::vector<std::string> unreadableFolders;
    std::vector<std::string> unreadableFiles;
    /// Files that are cut off or hold something else than their name says, or items that no listing can show: events
    /// without a start, to-dos without a UID.
    std::vector<std::string> damagedFiles;
};

namespace vdir {

/// Looks at every file that ends in `extension` in the collections below `root`. `healthOf` judges a file by its path,
/// on several threads. Paths come in the order of their collections and names. Throws PosixError where the root cannot
/// be listed.
VdirSurvey surveyOf(const std::string& root, const std::string& extension,
                    const std::function<FileHealth(const std::string& path)>& healthOf,
                    RootIs rootIs = RootIs::noCollection);

} // namespace vdir
} // namespace vesk
