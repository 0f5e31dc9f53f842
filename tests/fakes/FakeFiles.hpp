#pragma once

#include "VeskPlatform/FileManager.hpp"
#include "VeskPlatform/FileReader.hpp"
#include "VeskPlatform/PrivateFiles.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <cerrno>
#include <map>
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

/// Folders that were made; a path in `refused` throws EACCES.
class FakeFileManager : public FileManager {
public:
    std::vector<std::string> made;
    std::set<std::string> refused;
    std::string current = "/home/dana/work";

    std::string currentDirectoryPath() override { return current; }
    void createDirectory(const std::string& path) override {
        if (refused.contains(path)) throw PosixError(EACCES, path);
        made.push_back(path);
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
