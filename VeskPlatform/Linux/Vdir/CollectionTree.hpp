#pragma once

#include <functional>
#include <string>
#include <vector>

namespace vesk::vdir {

/// A folder of items: a calendar, a to-do list or an address book.
struct Collection {
    std::string path;
    /// The path relative to the root, as well-formed UTF-8.
    std::string identifier;
    /// The content of the file `displayname`, else the folder's name.
    std::string title;
    /// The account's folder name, or "On This Computer".
    std::string sourceTitle;
    bool writable = false;
};

/// Whether the root may be a collection itself, with an empty identifier and ahead of all others.
enum class RootIs { noCollection, collectionWhereItHoldsItems };

/// The collections below `root` in ascending byte order of their identifiers. A folder directly below the root is a
/// collection when it holds a file that ends in `extension`, a `displayname` or a `color` file, or no sub-folder at
/// all; otherwise it is an account and each of its sub-folders is a collection. Names that begin with a dot are passed
/// over. A missing root has none. A folder that cannot be read is passed over and told to `unreadable`; an unreadable
/// root throws PosixError.
std::vector<Collection> findCollections(const std::string& root, const std::string& extension,
                                        const std::function<void(const std::string& path, int errnoValue)>& unreadable,
                                        RootIs rootIs = RootIs::noCollection);

} // namespace vesk::vdir
