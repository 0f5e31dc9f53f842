#include "VeskPlatform/Linux/Vdir/Folder.hpp"

#include "VeskPlatform/Linux/FileDescriptor.hpp"
#include "VeskPlatform/Linux/Vdir/Parallel.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace vesk::vdir {
namespace {

struct DirectoryCloser {
    void operator()(DIR* directory) const { ::closedir(directory); }
};
using DirectoryPointer = std::unique_ptr<DIR, DirectoryCloser>;

DirectoryPointer openFolder(const std::string& path) {
    DirectoryPointer directory(::opendir(path.c_str()));
    if (directory == nullptr) throw PosixError(errno, path);
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

std::int64_t nanoseconds(const timespec& time) { return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec; }

} // namespace

bool FolderEntry::isFolder() const { return type == DT_DIR; }
bool FolderEntry::isRegularFile() const { return type == DT_REG; }

void forEachEntry(const std::string& path, const std::function<bool(const FolderEntry&)>& visit) {
    const DirectoryPointer directory = openFolder(path);
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

std::string readRegularFile(const std::string& path, std::size_t maximumBytes) {
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat status {};
    if (file.get() < 0 || ::fstat(file.get(), &status) != 0) throw PosixError(errno, path);
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

std::vector<ListedFile> listFiles(const std::string& path, std::string_view extension) {
    const DirectoryPointer directory = openFolder(path);
    std::vector<ListedFile> files;
    forEachVisibleEntry(directory.get(), [&](const dirent& entry) {
        const bool mayBeFile = entry.d_type == DT_REG || entry.d_type == DT_LNK || entry.d_type == DT_UNKNOWN;
        if (mayBeFile && hasExtension(entry.d_name, extension)) files.push_back({entry.d_name, {}});
        return true;
    });
    const int folder = ::dirfd(directory.get());
    inParallel(files.size(), 512, [&](std::size_t i) {
        struct stat status {};
        if (::fstatat(folder, files[i].name.c_str(), &status, 0) != 0 || !S_ISREG(status.st_mode)) {
            files[i].name.clear();
            return;
        }
        files[i].signature = {status.st_ino, nanoseconds(status.st_mtim), nanoseconds(status.st_ctim),
                              static_cast<std::uint64_t>(status.st_size)};
    });
    std::erase_if(files, [](const ListedFile& file) { return file.name.empty(); });
    return files;
}

} // namespace vesk::vdir
