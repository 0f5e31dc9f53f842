#include "VeskPlatform/Linux/FileWriting.hpp"

#include "VeskPlatform/Linux/HiddenName.hpp"
#include "VeskPlatform/Portable/FileDescriptor.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace vesk {
namespace {

namespace fs = std::filesystem;

/// The file behind its links; the path itself where nothing is there, or a link that leads nowhere.
fs::path realFile(const std::string& path) {
    std::error_code failure;
    fs::path real = fs::canonical(path, failure);
    if (!failure) return real;
    if (failure != std::errc::no_such_file_or_directory) throw PosixError(failure.value(), path);
    return path;
}

FileDescriptor openFolderOf(const fs::path& file, const std::string& path) {
    const fs::path folder = file.has_parent_path() ? file.parent_path() : fs::path(".");
    FileDescriptor opened(::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!opened) throw PosixError(errno, path);
    return opened;
}

/// The status of what is to be replaced, none where nothing is there or only a link that leads nowhere.
std::optional<struct stat> replaceable(int folder, const std::string& name, const std::string& path) {
    struct stat status {};
    if (::fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
        if (errno == ENOENT) return std::nullopt;
        throw PosixError(errno, path);
    }
    if (S_ISDIR(status.st_mode)) throw PosixError(EISDIR, path);
    if (S_ISLNK(status.st_mode)) return std::nullopt;
    if (!S_ISREG(status.st_mode)) throw PosixError(EINVAL, path);
    return status;
}

/// A file beside the real one: nameless while it is written, so that a killed run leaves nothing behind, then under a
/// name that listings pass over. Where the system has no nameless files it has that name from the start. It goes with
/// this object unless it was renamed.
class HiddenFile {
public:
    HiddenFile(int folder, const std::string& path)
        : folder_(folder), path_(path), file_(::openat(folder, ".", O_WRONLY | O_TMPFILE | O_CLOEXEC, 0666)) {
        if (!file_) openNamed();
    }
    ~HiddenFile() {
        if (named_ && !renamed_) ::unlinkat(folder_, name_.c_str(), 0);
    }
    HiddenFile(const HiddenFile&) = delete;
    HiddenFile& operator=(const HiddenFile&) = delete;

    /// The permissions and the group are those of `former`, where there is one.
    void write(std::string_view bytes, const std::optional<struct stat>& former) {
        fill(bytes, former);
        if (!named_ && !linkNameless()) {
            openNamed();
            fill(bytes, former);
        }
        file_.close(path_);
    }

    void giveName(const std::string& name, ExistingFile existing) {
        const bool named = existing == ExistingFile::replace
                               ? ::renameat(folder_, name_.c_str(), folder_, name.c_str()) == 0
                               : moveBeside(folder_, name_, name);
        if (!named) throw PosixError(errno, path_);
        renamed_ = true;
    }

private:
    void openNamed() {
        file_.reset(::openat(folder_, name_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666));
        if (!file_) throw PosixError(errno, path_);
        named_ = true;
    }

    void fill(std::string_view bytes, const std::optional<struct stat>& former) const {
        if (former) resemble(*former);
        writeAll(file_, bytes, path_);
        if (::fsync(file_.get()) != 0 && !isNotSupported(errno)) throw PosixError(errno, path_);
    }

    /// The group only where the system lets it.
    void resemble(const struct stat& other) const {
        const bool keepsGroup = ::fchown(file_.get(), static_cast<uid_t>(-1), other.st_gid) == 0;
        const mode_t mode = other.st_mode & (keepsGroup ? 0777 : 0707);
        if (::fchmod(file_.get(), mode) != 0 && !isNotSupported(errno)) throw PosixError(errno, path_);
    }

    /// False where there is no /proc or there are no hard links.
    bool linkNameless() {
        const std::string opened = "/proc/self/fd/" + std::to_string(file_.get());
        named_ = ::linkat(AT_FDCWD, opened.c_str(), folder_, name_.c_str(), AT_SYMLINK_FOLLOW) == 0;
        return named_;
    }

    int folder_;
    std::string path_, name_ = hiddenName();
    FileDescriptor file_;
    bool named_ = false, renamed_ = false;
};

/// As durable as the file system makes it: some cannot flush a folder, and some folders may be written but not read.
void flushFolder(const FileDescriptor& folder) {
    const FileDescriptor readable(::openat(folder.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (readable) (void)::fsync(readable.get());
}

} // namespace

void writeWholeFile(const std::string& path, std::string_view bytes, ExistingFile existing) {
    if (path.find('\0') != std::string::npos) throw PosixError(EINVAL, path.c_str());
    const fs::path real = realFile(path);
    const std::string name = real.filename().native();
    if (name.empty() || name == "." || name == "..") throw PosixError(path.empty() ? ENOENT : EISDIR, path);
    const FileDescriptor folder = openFolderOf(real, path);
    const auto former = replaceable(folder.get(), name, path);
    if (former && existing == ExistingFile::keep) throw PosixError(EEXIST, path);
    HiddenFile hidden(folder.get(), path);
    hidden.write(bytes, former);
    hidden.giveName(name, existing);
    flushFolder(folder);
}

} // namespace vesk
