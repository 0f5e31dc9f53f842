#pragma once

#include "VeskPlatform/Portable/FileDescriptor.hpp"
#include "VeskPlatform/ScreenImages.hpp"

#include <memory>
#include <string>

namespace vesk {

/// A PNG file with eight bits a colour, and with alpha where the picture is not opaque. It takes PixelImages only.
class PngFile : public ImageDestination {
public:
    /// Null where the file cannot be opened; one that is there is emptied.
    static std::unique_ptr<PngFile> create(const std::string& path);

    bool finalize(const ScreenImage& image) override;

private:
    explicit PngFile(FileDescriptor file) : file_(std::move(file)) {}

    FileDescriptor file_;
};

} // namespace vesk
