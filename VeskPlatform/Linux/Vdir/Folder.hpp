#pragma once

#include "VeskPlatform/Linux/Vdir/FileSignature.hpp"
#include "VeskSupport/Instant.hpp"

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

/// The names of the regular files of a folder that end in `extension`, in byte order; without asking for their
/// signatures. Throws PosixError.
std::vector<std::string> sortedFileNames(const std::string& path, std::string_view extension);

/// The bytes of a regular file of at most `maximumBytes`; never waits on a pipe. Throws PosixError.
std::string readRegularFile(const std::string& path, std::size_t maximumBytes);

/// The files of a folder. Their names lie in one block: a hundred thousand strings of their own cost as much as the
/// rest of a listing.
class FolderListing {
public:
    std::size_t size() const { return signatures.size(); }
    /// Ends in a zero byte; lives as long as the listing.
    const char* name(std::size_t file) const { return block_.data() + starts_[file]; }

    std::vector<FileSignature> signatures;

private:
    friend FolderListing listFiles(const std::string& path, std::string_view extension);
    void append(std::string_view name);
    void remove(const std::vector<char>& gone);

    std::string block_;
    std::vector<std::uint32_t> starts_;
};

/// The regular files of a folder that end in `extension`, in the folder's own order, which stays as long as nothing is
/// added or removed. Files that vanish meanwhile are left out. Uses several threads for large folders, since asking for
/// a hundred thousand signatures takes a tenth of a second. Throws PosixError.
FolderListing listFiles(const std::string& path, std::string_view extension);

/// The files of a collection's folder, and what the clock showed before they were listed.
struct DatedListing {
    Instant before{};
    FolderListing files;
};

/// Makes a folder and those above it where they are missing. Throws PosixError.
void makeFolders(const std::string& path);

/// `path` as absolute, links resolved, so that one folder has one path whatever the way to it; as it is where that
/// fails.
std::string canonicalPath(const std::string& path);

} // namespace vesk::vdir
