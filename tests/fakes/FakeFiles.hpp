#pragma once

#include "VeskPlatform/FileManager.hpp"
#include "VeskPlatform/FileReader.hpp"
#include "VeskPlatform/PrivateFiles.hpp"
#include "VeskSupport/ErrorRecord.hpp"

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

/// Files that are there and folders that were made; verbs are recorded in `calls`, folders also in `made`, and paths in
/// `refused` throw EACCES.
class FakeFileManager : public FileManager {
public:
    std::string current = "/home/dana/work";
    std::set<std::string> existing, refused;
    std::vector<std::string> calls, made;

    std::string currentDirectoryPath() override { return current; }
    void createDirectory(const std::string& path) override {
        begin("createDirectory", path);
        made.push_back(path);
    }
    bool fileExists(const std::string& path) override { return existing.contains(path); }
    void removeItem(const std::string& path) override {
        begin("removeItem", path);
        if (existing.erase(path) == 0) throw PosixError(ENOENT, path);
    }

    /// Programs are among the existing files too; links lead from a path to another.
    std::set<std::string> executable;
    std::map<std::string, std::string> links;

    bool isExecutableFile(const std::string& path) override { return executable.contains(path); }
    std::string resolvedPath(const std::string& path) override { return links.contains(path) ? links.at(path) : path; }
    std::unique_ptr<WorkDirectory> makeWorkDirectory(const std::string& prefix) override {
        begin("makeWorkDirectory", prefix);
        return std::make_unique<Work>(*this, "/temporary/" + prefix + "UUID");
    }

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

    void begin(const std::string& verb, const std::string& path) {
        if (refused.contains(path)) throw PosixError(EACCES, path);
        calls.push_back(verb + " " + path);
    }
};

/// Files in memory with permissions; `failing` names verbs that throw ("append", "setPermissions" …).
class FakePrivateFiles : public PrivateFiles {
public:
    std::map<std::string, std::string> files;
    std::map<std::string, unsigned> modes;
    std::set<std::string> folders;
    std::set<std::string> failing;
    std::vector<std::string> calls;

    void createDirectories(const std::string& path) override {
        begin("createDirectories", path);
        if (files.contains(path)) throw PosixError(EEXIST, path);
        folders.insert(path);
    }
    void setPermissions(const std::string& path, unsigned mode) override {
        begin("setPermissions", path);
        modes[path] = mode;
    }
    bool exists(const std::string& path) override {
        begin("exists", path);
        return files.contains(path) || folders.contains(path);
    }
    void append(const std::string& path, std::string_view bytes) override {
        begin("append", path);
        if (!files.contains(path)) throw PosixError(ENOENT, path);
        files[path] += bytes;
    }
    void writeAtomically(const std::string& path, std::string_view bytes) override {
        begin("writeAtomically", path);
        files[path] = bytes;
    }

private:
    void begin(const std::string& verb, const std::string& path) {
        calls.push_back(verb + " " + path);
        if (failing.contains(verb)) throw PosixError(EIO, path);
    }
};

} // namespace vesk::test
