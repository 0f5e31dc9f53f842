#pragma once

#include "VeskPlatform/Environment.hpp"
#include "VeskShellCore/CapabilityModels.hpp"
#include "VeskSupport/Records.hpp"

#include <cstdint>
#include <string>
#include <vector>

namespace vesk {

/// What lies in one of the user's stores of folders.
struct StoreReport {
    /// Such as "calendars".
    std::string name;
    /// The capability that it serves.
    CapabilityKind capability = CapabilityKind::calendar;
    std::string path;
    /// A store that does not exist is an empty one.
    bool exists = false;
    std::int64_t collections = 0;
    std::int64_t files = 0;
    std::vector<std::string> unreadableFolders;
    std::vector<std::string> unreadableFiles;
    /// Files that hold something else than their name says, only a part of it, or items that no listing can show.
    std::vector<std::string> unparsableFiles;
};

template <>
inline constexpr auto recordTable<StoreReport> =
    recordFields(required("name", &StoreReport::name), required("capability", &StoreReport::capability),
                 required("path", &StoreReport::path), required("exists", &StoreReport::exists),
                 required("collections", &StoreReport::collections), required("files", &StoreReport::files),
                 required("unreadableFolders", &StoreReport::unreadableFolders),
                 required("unreadableFiles", &StoreReport::unreadableFiles),
                 required("unparsableFiles", &StoreReport::unparsableFiles));

/// Reads every file of the user's stores and changes nothing, not even an index. Paths are well-formed UTF-8. Never
/// fails: a root that cannot be listed is an unreadable folder.
std::vector<StoreReport> inspectStores(Environment& environment);

} // namespace vesk
