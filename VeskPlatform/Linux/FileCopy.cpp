#include "VeskPlatform/Linux/FileCopy.hpp"

#include "VeskPlatform/Linux/DirectoryStream.hpp"
#include "VeskPlatform/Linux/HiddenName.hpp"
#include "VeskPlatform/Portable/FileDescriptor.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace vesk {
namespace {

/// One name in an open folder, with the whole path for messages.
struct Place {
    int folder;
    std::string name;
    std::string path;

    Place below(int opened, const std::string& child) const { return {opened, child, path + "/" + child}; }
    [[noreturn]] void fail(int errnoValue) const { throw PosixError(errnoValue, path); }
};

struct stat statusOf(const Place& place) {
    struct stat status {};
    if (::fstatat(place.folder, place.name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) place.fail(errno);
    return status;
}

/// Permissions and times; some mounted drives have none of their own.
void resemble(const FileDescriptor& copy, const struct stat& source) {
    (void)::fchmod(copy.get(), source.st_mode & 0777);
    const timespec times[2] = {source.st_atim, source.st_mtim};
    (void)::futimens(copy.get(), times);
}

void copyBytes(const FileDescriptor& source, const Place& from, const FileDescriptor& copy, const Place& to) {
    std::string block(std::size_t{256} * 1024, '\0');
    for (;;) {
        const ssize_t count = ::read(source.get(), block.data(), block.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) from.fail(errno);
        if (count == 0) return;
        writeAll(copy, std::string_view(block).substr(0, static_cast<std::size_t>(count)), to.path);
    }
}

void copyFile(const Place& from, const Place& to) {
    const FileDescriptor source(
        ::openat(from.folder, from.name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!source) from.fail(errno);
    struct stat status {};
    if (::fstat(source.get(), &status) != 0) from.fail(errno);
    if (!S_ISREG(status.st_mode)) from.fail(EINVAL);
    FileDescriptor copy(
        ::openat(to.folder, to.name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!copy) to.fail(errno);
    copyBytes(source, from, copy, to);
    resemble(copy, status);
    copy.close(to.path);
}

void copyLink(const Place& from, const Place& to) {
    std::vector<char> text(65536);
    const ssize_t length = ::readlinkat(from.folder, from.name.c_str(), text.data(), text.size() - 1);
    if (length < 0) from.fail(errno);
    if (::symlinkat(text.data(), to.folder, to.name.c_str()) != 0) to.fail(errno);
}

std::vector<std::string> namesIn(const FileDescriptor& folder, const Place& place) {
    const DirectoryStream stream(::fdopendir(::dup(folder.get())));
    if (!stream) place.fail(errno);
    std::vector<std::string> names;
    errno = 0;
    while (const dirent* entry = ::readdir(stream.get())) {
        std::string name = entry->d_name;
        if (name != "." && name != "..") names.push_back(std::move(name));
        errno = 0;
    }
    if (errno != 0) place.fail(errno);
    return names;
}

FileDescriptor openFolder(const Place& place) {
    FileDescriptor folder(::openat(place.folder, place.name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!folder) place.fail(errno);
    return folder;
}

/// A folder that is being copied, and which of its names come next.
struct OpenCopy {
    FileDescriptor source, copy;
    Place from, to;
    struct stat status;
    std::vector<std::string> names;
};

OpenCopy beginFolder(const Place& from, const Place& to) {
    FileDescriptor source = openFolder(from);
    struct stat status {};
    if (::fstat(source.get(), &status) != 0) from.fail(errno);
    if (::mkdirat(to.folder, to.name.c_str(), 0700) != 0) to.fail(errno);
    FileDescriptor copy = openFolder(to);
    auto names = namesIn(source, from);
    return {std::move(source), std::move(copy), from, to, status, std::move(names)};
}

void copyLeaf(const struct stat& status, const Place& from, const Place& to) {
    if (S_ISLNK(status.st_mode))
        copyLink(from, to);
    else if (S_ISREG(status.st_mode))
        copyFile(from, to);
    else
        from.fail(EINVAL);
}

/// With a list of its own, so that a deep tree costs open folders and not the thread's stack.
void copyFolder(const Place& from, const Place& to) {
    std::vector<OpenCopy> open;
    open.push_back(beginFolder(from, to));
    while (!open.empty()) {
        OpenCopy& current = open.back();
        if (current.names.empty()) {
            resemble(current.copy, current.status);
            open.pop_back();
            continue;
        }
        const std::string name = std::move(current.names.back());
        current.names.pop_back();
        const Place source = current.from.below(current.source.get(), name);
        const Place copy = current.to.below(current.copy.get(), name);
        const struct stat status = statusOf(source);
        if (S_ISDIR(status.st_mode))
            open.push_back(beginFolder(source, copy));
        else
            copyLeaf(status, source, copy);
    }
}

void requireOutside(const std::string& path, const std::string& destination) {
    namespace fs = std::filesystem;
    std::error_code failure;
    const fs::path source = fs::canonical(path, failure);
    if (failure) throw PosixError(failure.value(), path);
    const fs::path folder = fs::canonical(fs::absolute(destination).parent_path(), failure);
    if (failure) throw PosixError(failure.value(), destination);
    if ((folder / "").native().starts_with((source / "").native())) throw PosixError(EINVAL, destination);
}

/// Removes a copy, also folders in it that may not be written; what cannot be removed stays.
void removeCopy(const std::string& path) {
    namespace fs = std::filesystem;
    std::error_code ignored;
    const auto openUp = [&ignored](const fs::path& item) {
        if (fs::is_directory(fs::symlink_status(item, ignored)))
            fs::permissions(item, fs::perms::owner_all, fs::perm_options::add, ignored);
    };
    openUp(path);
    for (fs::recursive_directory_iterator item(path, ignored), end; item != end; item.increment(ignored))
        openUp(item->path());
    fs::remove_all(path, ignored);
}

/// A copy under a hidden name beside its own; it goes with this object unless it got that.
class HiddenCopy {
public:
    explicit HiddenCopy(const std::string& destination) : destination_(destination) {
        const std::filesystem::path path(destination);
        name_ = path.filename().native();
        if (name_.empty() || name_ == "." || name_ == "..")
            throw PosixError(path.empty() ? ENOENT : EEXIST, destination);
        parent_ = path.has_parent_path() ? path.parent_path() : ".";
        folder_.reset(::open(parent_.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
        struct stat taken {};
        if (!folder_) throw PosixError(errno, destination);
        if (::fstatat(folder_.get(), name_.c_str(), &taken, AT_SYMLINK_NOFOLLOW) == 0)
            throw PosixError(EEXIST, destination);
    }
    ~HiddenCopy() {
        if (!named_) removeCopy((parent_ / hidden_).native());
    }
    HiddenCopy(const HiddenCopy&) = delete;
    HiddenCopy& operator=(const HiddenCopy&) = delete;

    /// Messages call it by its own name.
    Place place() const { return {folder_.get(), hidden_, destination_}; }

    void giveName() {
        if (!moveBeside(folder_.get(), hidden_, name_)) throw PosixError(errno, destination_);
        named_ = true;
    }

private:
    std::string destination_, name_, hidden_ = hiddenName();
    std::filesystem::path parent_;
    FileDescriptor folder_;
    bool named_ = false;
};

} // namespace

void copyTree(const std::string& path, const std::string& destination) {
    HiddenCopy copy(destination);
    const Place from{AT_FDCWD, path, path};
    const struct stat status = statusOf(from);
    if (S_ISDIR(status.st_mode)) {
        requireOutside(path, destination);
        copyFolder(from, copy.place());
    } else {
        copyLeaf(status, from, copy.place());
    }
    copy.giveName();
}

} // namespace vesk
