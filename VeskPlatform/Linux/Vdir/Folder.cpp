#include "VeskPlatform/Linux/Vdir/Folder.hpp"

#include "VeskPlatform/Linux/DirectoryStream.hpp"
#include "VeskPlatform/Linux/OpenFailure.hpp"
#include "VeskPlatform/Linux/Vdir/Parallel.hpp"
#include "VeskPlatform/Portable/FileDescriptor.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace vesk::vdir {
namespace {

DirectoryStream openFolder(const std::string& path) {
    DirectoryStream directory = openDirectory(path);
    if (directory == nullptr) throwOpenFailure(errno, path);
    return directory;
}

unsigned char typeBehindLink(int folder, const char* name) {
    struct stat status {};
    if (::fstatat(folder, name, &status, 0) != 0) return DT_UNKNOWN;
    return S_ISDIR(status.st_mode) ? DT_DIR : S_ISREG(status.st_mode) ? DT_REG : DT_UNKNOWN;
}

template <class Visit> void forEachVisibleEntry(DIR* directory, Visit visit) {
    while (const dirent* entry = ::readdir(directory)) {
        if (entry->d_name[0] == '.') continue;
        if (!visit(*entry)) return;
    }
}

/// The signature of a regular file, links followed; none for anything else.
std::optional<FileSignature> signatureOf(int folder, const char* name) {
    struct stat status {};
    if (::fstatat(folder, name, &status, 0) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
    return signatureFrom(status);
}

} // namespace

bool FolderEntry::isFolder() const { return type == DT_DIR; }
bool FolderEntry::isRegularFile() const { return type == DT_REG; }

void forEachEntry(const std::string& path, const std::function<bool(const FolderEntry&)>& visit) {
    const DirectoryStream directory = openFolder(path);
    forEachVisibleEntry(directory.get(), [&](const dirent& entry) {
        const bool isPlain = entry.d_type == DT_REG || entry.d_type == DT_DIR;
        const auto type = isPlain ? entry.d_type : typeBehindLink(::dirfd(directory.get()), entry.d_name);
        return visit({entry.d_name, type});
    });
}

bool hasExtension(std::string_view name, std::string_view extension) {
    if (extension.empty() || name.size() < extension.size()) return false;
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    return std::equal(extension.begin(), extension.end(), name.end() - static_cast<std::ptrdiff_t>(extension.size()),
                      [&](char a, char b) { return lower(a) == lower(b); });
}

std::vector<std::string> sortedFileNames(const std::string& path, std::string_view extension) {
    std::vector<std::string> names;
    forEachEntry(path, [&](const FolderEntry& entry) {
        if (hasExtension(entry.name, extension) && entry.isRegularFile()) names.emplace_back(entry.name);
        return true;
    });
    std::sort(names.begin(), names.end());
    return names;
}

std::string readRegularFile(const std::string& path, std::size_t maximumBytes) {
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat status {};
    if (file.get() < 0 || ::fstat(file.get(), &status) != 0) throwOpenFailure(errno, path);
    if (!S_ISREG(status.st_mode)) throw PosixError(S_ISDIR(status.st_mode) ? EISDIR : EINVAL, path);
    if (static_cast<std::uint64_t>(status.st_size) > maximumBytes) throw PosixError(EFBIG, path);
    std::string bytes(static_cast<std::size_t>(status.st_size), '\0');
    std::size_t filled = 0;
    while (filled < bytes.size()) {
        const ssize_t count = ::read(file.get(), bytes.data() + filled, bytes.size() - filled);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) throw PosixError(errno, path);
        if (count == 0) break;
        filled += static_cast<std::size_t>(count);
    }
    bytes.resize(filled);
    return bytes;
}

void FolderListing::append(std::string_view name) {
    starts_.push_back(static_cast<std::uint32_t>(block_.size()));
    block_.append(name).push_back('\0');
}

void FolderListing::remove(const std::vector<char>& gone) {
    std::size_t kept = 0;
    for (std::size_t i = 0; i < gone.size(); ++i) {
        if (gone[i] != 0) continue;
        starts_[kept] = starts_[i];
        signatures[kept++] = signatures[i];
    }
    starts_.resize(kept);
    signatures.resize(kept);
}

FolderListing listFiles(const std::string& path, std::string_view extension) {
    const DirectoryStream directory = openFolder(path);
    FolderListing listing;
    forEachVisibleEntry(directory.get(), [&](const dirent& entry) {
        const bool mayBeFile = entry.d_type == DT_REG || entry.d_type == DT_LNK || entry.d_type == DT_UNKNOWN;
        if (mayBeFile && hasExtension(entry.d_name, extension)) listing.append(entry.d_name);
        return true;
    });
    const std::size_t count = listing.starts_.size();
    listing.signatures.resize(count);
    std::vector<char> gone(count, 0);
    constexpr std::size_t block = 256;
    inParallel((count + block - 1) / block, 8, [&](std::size_t number) {
        // Its own descriptor: threads that share one wait for each other at its count of uses, at every call.
        const FileDescriptor own(::openat(::dirfd(directory.get()), ".", O_PATH | O_DIRECTORY | O_CLOEXEC));
        const int folder = own ? own.get() : ::dirfd(directory.get());
        for (std::size_t i = number * block; i < std::min(count, (number + 1) * block); ++i) {
            const auto signature = signatureOf(folder, listing.name(i));
            if (signature)
                listing.signatures[i] = *signature;
            else
                gone[i] = 1;
        }
    });
    if (std::find(gone.begin(), gone.end(), 1) != gone.end()) listing.remove(gone);
    return listing;
}

void makeFolders(const std::string& path) {
    std::error_code failed;
    std::filesystem::create_directories(path, failed);
    if (failed) throw PosixError(failed.value(), path);
}

std::string canonicalPath(const std::string& path) {
    std::error_code failed;
    const auto canonical = std::filesystem::canonical(path, failed);
    return failed ? path : canonical.string();
}

} // namespace vesk::vdir
