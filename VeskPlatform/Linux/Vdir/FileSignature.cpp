#include "VeskPlatform/Linux/Vdir/FileSignature.hpp"

#include <unordered_map>

namespace vesk::vdir {
namespace {

std::int64_t nanoseconds(const timespec& time) { return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec; }

} // namespace

FileSignature signatureFrom(const struct stat& status) {
    return {status.st_ino, nanoseconds(status.st_mtim), nanoseconds(status.st_ctim),
            static_cast<std::uint64_t>(status.st_size)};
}

bool isSettled(const FileSignature& signature, std::int64_t now) {
    constexpr std::int64_t millisecond = 1'000'000;
    // Whole seconds are what file systems with coarse times give (two seconds on FAT).
    const bool coarse = signature.changed % (1000 * millisecond) == 0;
    return signature.changed <= now - (coarse ? 3000 * millisecond : 100 * millisecond);
}

void distrust(FileSignature& signature) { signature.modified = INT64_MIN; }

std::vector<std::size_t> placesOfUnchanged(const std::vector<FileSignature>& listed,
                                           const std::vector<FileSignature>& known) {
    std::unordered_map<std::uint64_t, std::size_t> placeOfInode;
    placeOfInode.reserve(known.size());
    for (std::size_t i = 0; i < known.size(); ++i) placeOfInode.emplace(known[i].inode, i);
    std::vector<std::size_t> places(listed.size(), notKnown);
    std::vector<bool> taken(known.size());
    for (std::size_t i = 0; i < listed.size(); ++i) {
        const auto place = placeOfInode.find(listed[i].inode);
        if (place == placeOfInode.end() || taken[place->second] || known[place->second] != listed[i]) continue;
        taken[places[i] = place->second] = true;
    }
    return places;
}

} // namespace vesk::vdir
