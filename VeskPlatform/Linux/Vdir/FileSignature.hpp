#pragma once

#include <cstdint>
#include <sys/stat.h>
#include <vector>

namespace vesk::vdir {

/// What tells one state of a file from another. The change time moves with every write, also where the writer sets the
/// modification time back.
struct FileSignature {
    std::uint64_t inode = 0;
    std::int64_t modified = 0, changed = 0; ///< Nanoseconds since 1970.
    std::uint64_t size = 0;

    bool operator==(const FileSignature&) const = default;
};

FileSignature signatureFrom(const struct stat& status);

/// Whether a file would have another signature if it were changed after `now`, in nanoseconds since 1970: it was not
/// written just before, as coarsely as its file system counts time.
bool isSettled(const FileSignature& signature, std::int64_t now);

/// Makes a signature match none, so that the next run reads the file again.
void distrust(FileSignature& signature);

inline constexpr std::size_t notKnown = SIZE_MAX;

/// The place in `known` of each listed file that is still in the state it had then, `notKnown` for the others. Two
/// names of one file are two files: each place is given once.
std::vector<std::size_t> placesOfUnchanged(const std::vector<FileSignature>& listed,
                                           const std::vector<FileSignature>& known);

} // namespace vesk::vdir
