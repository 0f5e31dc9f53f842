#pragma once

#include "VeskPlatform/FileManager.hpp"
#include "VeskPlatform/Portable/FileDescriptor.hpp"

#include <string>

namespace vesk {

/// The system's folder for temporary files: TMPDIR where that is absolute and a folder, else /tmp.
std::string temporaryFolder();

/// A folder of mode 0700 for the work of one run, removed with everything in it when the object goes. It is locked
/// (flock) for as long as its process lives. Making one also removes those of the same prefix that belong to the user
/// and that nobody holds any more, which is what a killed run leaves.
class WorkFolder : public WorkDirectory {
public:
    /// Below `parent`, named `prefix` and then `name`, which is unique. Throws PosixError.
    WorkFolder(const std::string& parent, const std::string& prefix, const std::string& name);
    ~WorkFolder() override;
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;

    const std::string& path() const override { return path_; }

private:
    std::string path_;
    FileDescriptor lock_;
};

} // namespace vesk
