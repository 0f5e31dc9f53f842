#pragma once

#include "VeskSupport/Records.hpp"

#include <cstdint>
#include <optional>
#include <string>

namespace vesk {

/// What lies in one of the user's stores of folders.
struct StoreReport {
    std::string path;
    /// A store that does not exist is an empty one.
    bool exists = false;
    std::int64_t collections = 0;
    std::int64_t files = 0;
    std::int64_t unreadableFiles = 0;
    std::int64_t unreadableFolders = 0;
    /// Files that hold something else than their name says; absent where nothing has looked into them.
    std::optional<std::int64_t> unparsableFiles;
};

template <>
inline constexpr auto recordTable<StoreReport> =
    recordFields(required("path", &StoreReport::path), required("exists", &StoreReport::exists),
                 required("collections", &StoreReport::collections), required("files", &StoreReport::files),
                 required("unreadableFiles", &StoreReport::unreadableFiles),
                 required("unreadableFolders", &StoreReport::unreadableFolders),
                 optional("unparsableFiles", &StoreReport::unparsableFiles));

/// Walks a store without opening its files. A folder directly below the root is a collection when it holds a file with
/// `extension`, a `displayname` or a `color` file, or no folder at all; otherwise each of its folders is one. Names
/// that begin with a dot are passed over. Never fails: what cannot be read is counted.
StoreReport inspectStore(const std::string& root, const std::string& extension);

} // namespace vesk
