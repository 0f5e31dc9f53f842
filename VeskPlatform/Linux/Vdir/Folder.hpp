#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace vesk::vdir {

struct FolderEntry {
    std::string_view name;
    /// DT_REG, DT_DIR …, links followed; DT_UNKNOWN for a link that leads nowhere.
    unsigned char type;

    bool isFolder() const;
    bool isRegularFile() const;
};

/// Visits the entries of a folder in no order, but for names that begin with a dot, until `visit` returns false.
/// Throws PosixError.
void forEachEntry(const std::string& path, const std::function<bool(const FolderEntry&)>& visit);

/// Whether `name` ends in `extension` (such as ".ics"), case aside; never for an empty extension.
bool hasExtension(std::string_view name, std::string_view extension);

/// The bytes of a regular file of at most `maximumBytes`; never waits on a pipe. Throws PosixError.
std::string readRegularFile(const std::string& path, std::size_t maximumBytes);

/// What tells one state of a file from another. The change time moves with every write, also where the writer sets the
/// modification time back.
struct FileSignature {
    std::uint64_t inode = 0;
    std::int64_t modified = 0, changed = 0; ///< Nanoseconds since 1970.
    std::uint64_t size = 0;

    bool operator==(const FileSignature&) const = default;
};

struct ListedFile {
    std::string name;
    FileSignature signature;
};

/// The regular files of a folder that end in `extension`, in no order. Files that vanish meanwhile are left out. Uses
/// two threads for large folders, since asking for a hundred thousand signatures takes a tenth of a second.
/// Throws PosixError.
std::vector<ListedFile> listFiles(const std::string& path, std::string_view extension);

} // namespace vesk::vdir
