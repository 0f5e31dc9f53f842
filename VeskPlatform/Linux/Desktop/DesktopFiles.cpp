#include "VeskPlatform/Linux/Desktop/DesktopFiles.hpp"

#include "VeskPlatform/Environment.hpp"
#include "VeskPlatform/Linux/DirectoryStream.hpp"
#include "VeskPlatform/Portable/FileDescriptor.hpp"

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace vesk {

namespace {

constexpr std::string_view suffix = ".desktop";
/// Deeper than any folder of programs; a link that leads back up ends there.
constexpr int deepestFolder = 8;
/// With all its translations the largest known one has some ten thousand bytes.
constexpr std::size_t largestFile = 1 << 20;

std::vector<std::string> applicationFolders(Environment& environment) {
    std::vector<std::string> folders;
    const std::string home = environment.homeDirectory(), own = environment.value("XDG_DATA_HOME").value_or("");
    if (own.starts_with('/'))
        folders.push_back(own + "/applications");
    else if (!home.empty())
        folders.push_back(home + "/.local/share/applications");
    std::string listed = environment.value("XDG_DATA_DIRS").value_or("");
    if (listed.empty()) listed = "/usr/local/share:/usr/share";
    for (std::string_view rest = listed; !rest.empty();) {
        const auto end = std::min(rest.find(':'), rest.size());
        std::string_view base = rest.substr(0, end);
        while (base.size() > 1 && base.ends_with('/')) base.remove_suffix(1);
        if (base.starts_with('/')) folders.push_back(std::string(base) + "/applications");
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return folders;
}

bool isFolder(const dirent& entry, const std::string& path) {
    if (entry.d_type != DT_UNKNOWN && entry.d_type != DT_LNK) return entry.d_type == DT_DIR;
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

void collect(const std::string& folder, const std::string& prefix, int depth,
             std::map<std::string, std::string>& paths) {
    const DirectoryStream stream = openDirectory(folder);
    if (!stream) return;
    while (const dirent* const entry = ::readdir(stream.get())) {
        const std::string name = entry->d_name, path = folder + "/" + name;
        if (name.ends_with(suffix))
            paths.emplace(prefix + name.substr(0, name.size() - suffix.size()), path);
        else if (!name.starts_with('.') && depth < deepestFolder && isFolder(*entry, path))
            collect(path, prefix + name + "-", depth + 1, paths);
    }
}

std::string contentsOf(const std::string& path) {
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    std::string contents;
    std::array<char, 16384> block{};
    for (ssize_t count = 1; file && count > 0 && contents.size() < largestFile;) {
        count = ::read(file.get(), block.data(), block.size());
        if (count > 0) contents.append(block.data(), static_cast<std::size_t>(count));
    }
    return contents;
}

/// Identifiers and class names are programmers' words: only the letters of ASCII have a case.
std::string lowered(std::string text) {
    std::ranges::transform(text, text.begin(), [](char c) { return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c; });
    return text;
}

} // namespace

std::optional<DesktopEntry> readDesktopEntry(const std::string& path) {
    const std::string contents = contentsOf(path);
    return contents.empty() ? std::nullopt : std::optional<DesktopEntry>(contents);
}

DesktopFiles::DesktopFiles(Environment& environment)
    : folders_(applicationFolders(environment)), locales_(messageLocales(environment)) {}

const DesktopFiles::Paths& DesktopFiles::paths() {
    if (!paths_) {
        paths_.emplace();
        for (const std::string& folder : folders_) {
            Paths own;
            collect(folder, "", 0, own);
            paths_->merge(own);
        }
    }
    return *paths_;
}

std::optional<DesktopFile> DesktopFiles::withIdentifier(const std::string& identifier) {
    const auto found = paths().find(identifier);
    if (found == paths().end()) return std::nullopt;
    const auto entry = readDesktopEntry(found->second);
    if (!entry || entry->isTrue("Hidden")) return std::nullopt;
    return DesktopFile{identifier, found->second, entry->localizedText("Name", locales_).value_or("")};
}

/// Where several files claim a class, one that menus show stands before a helper that they do not.
void DesktopFiles::readStartupClasses() {
    static constexpr std::string_view key = "StartupWMClass";
    startupClasses_.emplace();
    std::map<std::string, std::string> helpers;
    for (const auto& [identifier, path] : paths()) {
        const std::string contents = contentsOf(path);
        if (contents.find(key) == std::string::npos) continue;
        const DesktopEntry entry(contents);
        const auto claimed = entry.text(std::string(key));
        if (!claimed || claimed->empty() || entry.isTrue("Hidden")) continue;
        (entry.isTrue("NoDisplay") ? helpers : *startupClasses_).emplace(*claimed, identifier);
    }
    startupClasses_->merge(helpers);
}

std::optional<DesktopFile> DesktopFiles::namedAsClass(const std::string& name) {
    if (name.empty()) return std::nullopt;
    if (auto exact = withIdentifier(name)) return exact;
    const auto alike = std::ranges::find_if(
        paths(), [wanted = lowered(name)](const auto& entry) { return lowered(entry.first) == wanted; });
    return alike == paths().end() ? std::nullopt : withIdentifier(alike->first);
}

std::optional<DesktopFile> DesktopFiles::ofWindow(const WindowIdentity& window) {
    if (!window.applicationId.empty())
        if (auto told = withIdentifier(window.applicationId)) return told;
    if (!startupClasses_) readStartupClasses();
    // A web application of a browser has the browser's class and an instance name of its own.
    for (const std::string& name : {window.instanceName, window.className, window.applicationId}) {
        const auto claimed = startupClasses_->find(name);
        if (claimed != startupClasses_->end()) return withIdentifier(claimed->second);
    }
    for (const std::string& name : {window.className, window.instanceName, window.applicationId})
        if (auto named = namedAsClass(name)) return named;
    return std::nullopt;
}

std::optional<DesktopFile> DesktopFiles::withName(const std::string& name) {
    std::optional<DesktopFile> alike;
    for (const auto& [identifier, path] : paths()) {
        const auto entry = readDesktopEntry(path);
        if (!entry || entry->isTrue("Hidden")) continue;
        const std::string shown = entry->localizedText("Name", locales_).value_or(""),
                          plain = entry->text("Name").value_or("");
        if (shown == name || plain == name) return DesktopFile{identifier, path, shown};
        if (!alike && (lowered(shown) == lowered(name) || lowered(plain) == lowered(name)))
            alike = DesktopFile{identifier, path, shown};
    }
    return alike;
}

} // namespace vesk
