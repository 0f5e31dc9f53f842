#pragma once

#include "VeskPlatform/FileManager.hpp"

namespace vesk {

/// The file system through NSFileManager; its failures are the system's own. Folders are listed with readdir(3), which
/// tells names in the system's order and what failed by its number.
class FoundationFileManager : public FileManager {
public:
    std::string currentDirectoryPath() override;
    void createDirectory(const std::string& path) override;
    bool fileExists(const std::string& path) override;
    std::optional<FileAttributes> attributes(const std::string& path) override;
    bool isOrContains(const std::string& folder, const std::string& item) override;
    std::unique_ptr<DirectoryReader> openDirectory(const std::string& path) override;
    std::string firstBytes(const std::string& path, std::size_t count) override;
    void writeFile(const std::string& path, std::string_view bytes, ExistingFile existing) override;
    void copyItem(const std::string& path, const std::string& destination) override;
    void removeFile(const std::string& path) override;
    void removeItem(const std::string& path) override;
    std::unique_ptr<WorkDirectory> makeWorkDirectory(const std::string& prefix) override;
    bool isExecutableFile(const std::string& path) override;
    std::string resolvedPath(const std::string& path) override;
};

} // namespace vesk
