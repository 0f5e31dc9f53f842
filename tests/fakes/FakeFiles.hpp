#pragma once

#include "VeskPlatform/FileManager.hpp"
#include "VeskPlatform/FilePlaces.hpp"
#include "VeskPlatform/FileReader.hpp"
#include "VeskPlatform/PrivateFiles.hpp"
#include "VeskSupport/ErrorRecord.hpp"
#include "VeskSupport/FilePath.hpp"

#include <algorithm>
#include <cerrno>
#include <map>
#include <memory>
#include <set>
#include <vector>

namespace vesk::test {

class FakeFileReader : public FileReader {
public:
    std::map<std::string, std::string> files;
    std::set<std::string> folders;

    std::string contents(const std::string& path, std::uint64_t maximumBytes) override {
        if (folders.contains(path)) throw PosixError(EISDIR, path);
        const auto found = files.find(path);
        if (found == files.end()) throw PosixError(ENOENT, path);
        if (found->second.size() > maximumBytes) throw PosixError(EFBIG, path);
        return found->second;
    }
};

/// A tree of folders, files and links, all paths absolute. Files of `existing` are empty; those that `devices`
/// names too have no size at all. Folders are there once something lies in them. Verbs are recorded in `calls`, folders
/// that were made also in `made`. Paths in `refused` throw EACCES, those in `failing` their own code.
class FakeFileManager : public FileManager {
public:
    std::string current = "/home/dana/work";
    std::set<std::string> existing, devices, refused;
    std::map<std::string, std::int64_t> failing;
    std::map<std::string, std::string> texts, links;
    std::set<std::string> folders{"/"};
    /// When whatever is written or copied was written.
    Instant now{};
    /// None where the system does not tell.
    std::map<std::string, std::optional<Instant>> modified;
    std::vector<std::string> calls, made;

    std::string currentDirectoryPath() override { return current; }
    void createDirectory(const std::string& path) override {
        begin("createDirectory", path);
        for (std::string above = resolved(path); above != "/"; above = parentFolder(above))
            if (isFile(above)) throw PosixError(above == resolved(path) ? EEXIST : ENOTDIR, path);
        made.push_back(path);
        folders.insert(resolved(path));
    }
    bool fileExists(const std::string& path) override { return isNamed(path) && isThere(resolved(path)); }
    std::optional<FileAttributes> attributes(const std::string& path) override {
        const std::string real = resolved(path);
        if (!isNamed(path) || !isThere(real)) return std::nullopt;
        const auto changed = modified.find(real);
        const std::optional<Instant> when = changed == modified.end() ? Instant{} : changed->second;
        if (!isFile(real)) return FileAttributes{.isDirectory = true, .size = {}, .modified = when};
        if (devices.contains(real)) return FileAttributes{.isDirectory = false, .size = {}, .modified = when};
        return FileAttributes{
            .isDirectory = false, .size = static_cast<std::int64_t>(texts[real].size()), .modified = when};
    }
    bool isOrContains(const std::string& folder, const std::string& item) override {
        if (!fileExists(folder) || !fileExists(item)) return false;
        const std::string place = placeOf(item);
        if (links.contains(folder)) return placeOf(folder) == place;
        return isIn(resolved(folder), resolved(item)) || isIn(resolved(folder), place);
    }
    std::unique_ptr<DirectoryReader> openDirectory(const std::string& path) override {
        begin("openDirectory", path);
        const std::string real = resolved(path);
        if (isFile(real)) throw PosixError(ENOTDIR, path);
        if (!isThere(real)) throw PosixError(ENOENT, path);
        return std::make_unique<Listing>(entriesOf(real), given);
    }
    std::string firstBytes(const std::string& path, std::size_t count) override {
        begin("firstBytes", path);
        const std::string real = resolved(path);
        if (isFile(real)) return texts[real].substr(0, count);
        throw PosixError(isThere(real) ? EISDIR : ENOENT, path);
    }
    void writeFile(const std::string& path, std::string_view bytes, ExistingFile keeping) override {
        begin("writeFile", path);
        const std::string real = resolved(path);
        if (isFile(parentFolder(real))) throw PosixError(ENOTDIR, path);
        if (!isThere(parentFolder(real))) throw PosixError(ENOENT, path);
        if (isThere(real) && !isFile(real)) throw PosixError(EISDIR, path);
        if (isFile(real) && keeping == ExistingFile::keep) throw PosixError(EEXIST, path);
        put(isThere(real) ? real : path, bytes);
    }
    void copyItem(const std::string& path, const std::string& destination) override {
        if (fileExists(destination) || links.contains(destination)) throw PosixError(EEXIST, destination);
        if (!links.contains(path) && !fileExists(path)) throw PosixError(ENOENT, path);
        if (!links.contains(path) && isIn(resolved(path), resolved(parentFolder(destination))))
            throw PosixError(EINVAL, destination);
        begin("copyItem", path);
        if (const auto link = links.find(path); link != links.end())
            links[destination] = std::string(link->second);
        else
            copyTree(resolved(path), destination);
    }
    void removeFile(const std::string& path) override {
        begin("removeFile", path);
        if (links.erase(path) > 0) return;
        if (!isThere(path)) throw PosixError(ENOENT, path);
        existing.erase(path);
        texts.erase(path);
    }
    void removeItem(const std::string& path) override {
        begin("removeItem", path);
        if (links.erase(path) > 0) return;
        if (!isThere(path)) throw PosixError(ENOENT, path);
        const auto gone = [&](const auto& entry) { return isIn(path, keyOf(entry)); };
        std::erase_if(existing, gone);
        std::erase_if(texts, gone);
        std::erase_if(links, gone);
        std::erase_if(folders, gone);
    }

    /// Programs are among the existing files too.
    std::set<std::string> executable;

    bool isExecutableFile(const std::string& path) override { return executable.contains(path); }
    std::string resolvedPath(const std::string& path) override { return links.contains(path) ? links.at(path) : path; }
    std::unique_ptr<WorkDirectory> makeWorkDirectory(const std::string& prefix) override {
        begin("makeWorkDirectory", prefix);
        return std::make_unique<Work>(*this, "/temporary/" + prefix + "UUID");
    }

    /// A file with its text, and the folders it lies in.
    void put(const std::string& path, std::string_view text) {
        links.erase(path);
        texts[path] = text;
        modified[path] = now;
    }

    /// How many entries listings have given.
    std::size_t given = 0;

private:
    class Work : public WorkDirectory {
    public:
        Work(FakeFileManager& files, std::string path) : files_(files), path_(std::move(path)) {}
        ~Work() override { files_.calls.push_back("removeWorkDirectory " + path_); }
        const std::string& path() const override { return path_; }

    private:
        FakeFileManager& files_;
        std::string path_;
    };

    class Listing : public DirectoryReader {
    public:
        Listing(std::vector<DirectoryEntry> entries, std::size_t& given)
            : entries_(std::move(entries)), given_(given) {}
        std::optional<DirectoryEntry> next() override {
            if (position_ == entries_.size()) return std::nullopt;
            ++given_;
            return entries_[position_++];
        }

    private:
        std::vector<DirectoryEntry> entries_;
        std::size_t position_ = 0;
        std::size_t& given_;
    };

    static const std::string& keyOf(const std::string& path) { return path; }
    static const std::string& keyOf(const std::pair<const std::string, std::string>& entry) { return entry.first; }
    static bool isNamed(const std::string& path) { return path.find('\0') == std::string::npos; }
    static bool isIn(const std::string& folder, const std::string& path) {
        return folder == "/" || path == folder || path.starts_with(folder + "/");
    }

    bool isFile(const std::string& path) const { return texts.contains(path) || existing.contains(path); }
    /// Of a path with its links followed; one that is still a link leads nowhere.
    bool isThere(const std::string& path) const {
        if (path.empty() || links.contains(path)) return false;
        return isFile(path) || std::ranges::any_of(everything(), [&](const auto& other) { return isIn(path, other); });
    }
    std::set<std::string> everything() const {
        std::set<std::string> paths(folders);
        paths.insert(existing.begin(), existing.end());
        for (const auto& entry : texts) paths.insert(entry.first);
        for (const auto& entry : links) paths.insert(entry.first);
        return paths;
    }

    /// The path with its links followed; one that leads nowhere, or around, is followed as far as it goes.
    std::string resolved(const std::string& path) const {
        std::string real = path;
        for (int hops = 0; hops < 40; ++hops) {
            const auto link = std::ranges::find_if(links, [&](const auto& entry) { return isIn(entry.first, real); });
            if (link == links.end()) break;
            real = link->second + real.substr(link->first.size());
        }
        return real;
    }

    /// Where a name lies, whatever it leads to.
    std::string placeOf(const std::string& path) const {
        return resolved(parentFolder(path)) + "/" + lastPathComponent(path);
    }

    /// In the order of the names.
    std::vector<DirectoryEntry> entriesOf(const std::string& folder) const {
        const std::string start = folder == "/" ? folder : folder + "/";
        std::map<std::string, bool> names;
        for (const std::string& path : everything()) {
            if (!path.starts_with(start) || path == start) continue;
            const std::string rest = path.substr(start.size());
            const std::string name = rest.substr(0, rest.find('/'));
            names[name] = !isFile(start + name) && !links.contains(start + name);
        }
        std::vector<DirectoryEntry> entries;
        entries.reserve(names.size());
        for (const auto& [name, isDirectory] : names) entries.push_back({name, isDirectory});
        return entries;
    }

    void copyTree(const std::string& from, const std::string& to) {
        for (const std::string& path : everything()) {
            if (!isIn(from, path)) continue;
            const std::string copy = to + path.substr(from.size());
            if (const auto link = links.find(path); link != links.end())
                links[copy] = std::string(link->second);
            else if (isFile(path))
                put(copy, std::string(texts[path]));
            else
                folders.insert(copy);
        }
        if (!isFile(from)) folders.insert(to);
    }

    void begin(const std::string& verb, const std::string& path) {
        if (!isNamed(path)) throw PosixError(EINVAL, path.c_str());
        if (refused.contains(path)) throw PosixError(EACCES, path);
        if (const auto failure = failing.find(path); failure != failing.end())
            throw PosixError(static_cast<int>(failure->second), path);
        calls.push_back(verb + " " + path);
    }
};

/// Places that a test sets, below whatever home it is asked for.
class FakeFilePlaces : public FilePlaces {
public:
    std::vector<std::string> protectedNames{"/.keys", "/.mail", "/.browser"};
    std::vector<std::string> guardedNames{"/Desktop", "/Documents", "/Downloads"};
    std::vector<std::string> guardedElsewhere{"/drive"};

    std::vector<ProtectedPlace> protectedPlaces(const std::string& homeDirectory) override {
        std::vector<ProtectedPlace> places;
        for (const std::string& name : protectedNames) places.push_back({homeDirectory + name, "~" + name});
        return places;
    }
    std::vector<std::string> guardedFolders(const std::string& homeDirectory) override {
        std::vector<std::string> folders;
        for (const std::string& name : guardedNames) folders.push_back(homeDirectory + name);
        folders.insert(folders.end(), guardedElsewhere.begin(), guardedElsewhere.end());
        return folders;
    }
};

/// Files in memory with permissions; `failing` names verbs that throw ("append", "setPermissions" …), and `failingCall`
/// is the number of the one call that does (from 1), whatever its verb. They throw `failure`.
class FakePrivateFiles : public PrivateFiles {
public:
    std::map<std::string, std::string> files;
    std::map<std::string, unsigned> modes;
    std::set<std::string> folders;
    std::set<std::string> failing;
    std::size_t failingCall = 0;
    int failure = EIO;
    std::vector<std::string> calls;

    void createDirectories(const std::string& path, unsigned mode) override {
        begin("createDirectories", path);
        if (files.contains(path)) throw PosixError(EEXIST, path);
        if (folders.insert(path).second) modes[path] = mode;
    }
    void setPermissions(const std::string& path, unsigned mode) override {
        begin("setPermissions", path);
        modes[path] = mode;
    }
    bool exists(const std::string& path) override {
        begin("exists", path);
        return files.contains(path) || folders.contains(path);
    }
    void createFile(const std::string& path, unsigned mode) override {
        begin("createFile", path);
        if (files.contains(path) || folders.contains(path)) throw PosixError(EEXIST, path);
        files[path] = "";
        modes[path] = mode;
    }
    void writeThrough(const std::string& path, std::string_view bytes) override {
        begin("writeThrough", path);
        requireFile(path);
        files[path] = bytes;
    }
    void rename(const std::string& path, const std::string& newPath) override {
        begin("rename", path);
        requireFile(path);
        if (folders.contains(newPath)) throw PosixError(EISDIR, newPath);
        files[newPath] = std::string(files[path]);
        modes[newPath] = modes[path];
        files.erase(path);
        modes.erase(path);
    }
    void removeFile(const std::string& path) override {
        begin("removeFile", path);
        requireFile(path);
        files.erase(path);
        modes.erase(path);
    }
    void append(const std::string& path, std::string_view bytes) override {
        begin("append", path);
        requireFile(path);
        files[path] += bytes;
    }
    void writeAtomically(const std::string& path, std::string_view bytes) override {
        begin("writeAtomically", path);
        files[path] = bytes;
    }

private:
    void begin(const std::string& verb, const std::string& path) {
        calls.push_back(verb + " " + path);
        if (failing.contains(verb) || calls.size() == failingCall) throw PosixError(failure, path);
    }
    void requireFile(const std::string& path) const {
        if (folders.contains(path)) throw PosixError(EISDIR, path);
        if (!files.contains(path)) throw PosixError(ENOENT, path);
    }
};

} // namespace vesk::test
