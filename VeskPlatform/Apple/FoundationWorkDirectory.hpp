#pragma once

#include "VeskPlatform/FileManager.hpp"
#include "VeskPlatform/Portable/FileDescriptor.hpp"

#include <string>

namespace vesk {

/// A folder of mode 0700 in NSTemporaryDirectory(), removed with everything in it when the object goes. It is locked
/// (flock(2)) for as long as its process lives. Making one also removes those of the same prefix that belong to the
/// user and that nobody holds any more, which is what a killed run leaves.
class FoundationWorkDirectory : public WorkDirectory {
public:
    explicit FoundationWorkDirectory(const std::string& prefix);
    ~FoundationWorkDirectory() override;
    FoundationWorkDirectory(const FoundationWorkDirectory&) = delete;
    FoundationWorkDirectory& operator=(const FoundationWorkDirectory&) = delete;

    const std::string& path() const override { return path_; }

private:
    std::string path_;
    FileDescriptor lock_;
};

} // namespace vesk
